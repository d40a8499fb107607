# The device core against the scripted layer.
foreach(test tst_hub tst_devicestate tst_writefamily tst_dispatch tst_dispatchreads tst_worker tst_devicewatch
    tst_imagecache tst_imagefile)
  add_morlen_test(${test} SOURCES ${test}.cpp ${PROJECT_SOURCE_DIR}/tests/support/HubLog.h
    LINKS device fakehidusb Qt5::Test)
endforeach()
# What the buttons do.
foreach(test tst_actions tst_bindings)
  add_morlen_test(${test} SOURCES ${test}.cpp LINKS actions fakehidusb Qt5::Test)
endforeach()
