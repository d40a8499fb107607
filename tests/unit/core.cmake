# What start-up, the stores, the language tables and the product's own data promise. These tests are full
# of texts, which are easier to read unwrapped.
function(add_core_test name)
  file(GLOB source CONFIGURE_DEPENDS */${name}.cpp)
  add_morlen_test(${name} SOURCES ${source} LINKS ${ARGN} Qt5::Test)
  target_compile_options(${name} PRIVATE -UQT_NO_CAST_FROM_ASCII)
endfunction()

foreach(test tst_dataroot tst_safefile tst_crashfile tst_logwriter tst_singleinstance tst_scale)
  add_core_test(${test} environment)
endforeach()
add_core_test(tst_fontscale presentation fakehidusb)
foreach(test tst_inidocument tst_configreader tst_inistore)
  add_core_test(${test} catalogue)
endforeach()
add_core_test(tst_language language)
add_core_test(tst_jsontree language)
add_core_test(tst_encodecatalogue catalogue)
target_sources(tst_encodecatalogue PRIVATE ${PROJECT_SOURCE_DIR}/tools/encode/CatalogueSource.cpp
  ${PROJECT_SOURCE_DIR}/tools/encode/UdevRules.cpp)
target_compile_definitions(tst_encodecatalogue PRIVATE ENCODER="$<TARGET_FILE:encode-catalogue>")
add_dependencies(tst_encodecatalogue encode-catalogue)
foreach(test tst_productdata tst_productuse)
  add_core_test(${test} catalogue language)
  target_compile_definitions(${test} PRIVATE PRODUCT_FOLDER="${MORLEN_PRODUCT_DIR}"
    SOURCE_FOLDER="${PROJECT_SOURCE_DIR}")
  add_dependencies(${test} catalogue-data language-data)
endforeach()
