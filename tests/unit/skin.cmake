add_morlen_test(tst_skin SOURCES skin/tst_skin.cpp LINKS Qt5::Gui Qt5::Test)
include(${PROJECT_SOURCE_DIR}/skin/palette.cmake)
target_compile_definitions(tst_skin PRIVATE SKIN_PICTURES="${MORLEN_PRODUCT_DIR}/Picture")
foreach(colour ground ink inkDim)
  string(SUBSTRING ${${colour}} 1 6 digits) # a definition cannot hold the "#"
  target_compile_definitions(tst_skin PRIVATE skin_${colour}="${digits}")
endforeach()
add_dependencies(tst_skin skin)
add_morlen_test(tst_palette SOURCES tools/tst_palette.cpp LINKS pack Qt5::Test)
