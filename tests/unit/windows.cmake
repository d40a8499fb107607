# What the windows decide without a window.
add_morlen_test(tst_attachedlist SOURCES selection/tst_attachedlist.cpp LINKS fakehidusb selection Qt5::Test)
add_morlen_test(tst_firmwaresearch SOURCES catalogue/tst_firmwaresearch.cpp LINKS catalogue Qt5::Test)
