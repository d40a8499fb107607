# The device core against the scripted layer.
foreach(test tst_hub tst_writefamily tst_dispatch tst_worker tst_devicewatch tst_imagecache tst_imagefile)
  add_morlen_test(${test} SOURCES ${test}.cpp ${PROJECT_SOURCE_DIR}/tests/support/HubLog.h
    LINKS device fakehidusb Qt5::Test)
endforeach()
add_morlen_test(tst_actions SOURCES tst_actions.cpp LINKS actions fakehidusb Qt5::Test)
target_compile_options(tst_actions PRIVATE -UQT_NO_CAST_FROM_ASCII)
