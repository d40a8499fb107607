# The emulator's tests: raw datagrams, no device layer.
find_package(GTest REQUIRED)
add_morlen_test(emulator_test
  SOURCES
    emulator_boot.cpp
    emulator_bus.cpp
    emulator_commands.cpp
    emulator_events.cpp
    emulator_faults.cpp
    emulator_orders.cpp
    emulator_pace.cpp
    emulator_program.cpp
    emulator_scenario.cpp
    emulator_scene.cpp
    emulator_usb.cpp
    emulator_words.cpp
  LINKS emulator GTest::gtest_main)
set_target_properties(emulator_test PROPERTIES AUTOMOC OFF)
target_compile_definitions(emulator_test PRIVATE
  EMULATOR_PROGRAM="$<TARGET_FILE:mouse-emulator>"
  DEFAULT_SCENARIO="${PROJECT_SOURCE_DIR}/emulator/default.scenario"
  TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
add_dependencies(emulator_test mouse-emulator)
