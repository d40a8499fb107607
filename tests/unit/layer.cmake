# The device layer against a scripted device.
find_package(GTest REQUIRED)
find_package(ZLIB REQUIRED)
add_library(hidusb_support STATIC ${PROJECT_SOURCE_DIR}/tests/support/FakeDevice.cpp)
morlen_target(hidusb_support)
target_link_libraries(hidusb_support PUBLIC wire Threads::Threads)
add_morlen_test(hidusb_core_test
  SOURCES
    hidusb/hidusb_channel.cpp
    hidusb/hidusb_codec.cpp
    hidusb/hidusb_descriptor.cpp
    hidusb/hidusb_mirror.cpp
    hidusb/hidusb_registry.cpp
    hidusb/hidusb_wire.cpp
    hidusb/hidusb_reportwriter.cpp
  LINKS hidusb_core hidusb_support GTest::gtest_main)
# The same against a bus of the test's own, in the place of the one that the process would choose.
add_morlen_test(hidusb_slowbus_test SOURCES hidusb/hidusb_slowbus.cpp LINKS hidusb_core hidusb_support GTest::gtest_main)
# What the program sees: the library itself.
add_morlen_test(hidusb_test
  SOURCES
    hidusb/hidusb_connection.cpp
    hidusb/hidusb_conversions.cpp
    hidusb/hidusb_exports.cpp
    hidusb/hidusb_finder.cpp
    hidusb/hidusb_hotplug.cpp
    hidusb/hidusb_upgrade.cpp
    hidusb/hidusb_writer.cpp
  LINKS HIDUsb hidusb_support GTest::gtest_main ZLIB::ZLIB)
target_compile_definitions(hidusb_test PRIVATE
  HIDUSB_HEADER="${PROJECT_SOURCE_DIR}/device/hidusb/HIDUsb.h"
  HIDUSB_LIBRARY="$<TARGET_FILE:HIDUsb>")
# The layer and the emulator together.
add_morlen_test(hidusb_emulator_test
  SOURCES hidusb/hidusb_emulator.cpp
  LINKS HIDUsb hidusb_core emulator hidusb_support GTest::gtest_main ZLIB::ZLIB
  TIMEOUT 300)
set_target_properties(hidusb_support hidusb_core_test hidusb_slowbus_test hidusb_test hidusb_emulator_test
  PROPERTIES AUTOMOC OFF)
