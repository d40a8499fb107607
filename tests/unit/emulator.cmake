# The emulator's tests: raw datagrams, no device layer.
find_package(GTest REQUIRED)
add_morlen_test(emulator_test
  SOURCES
    emulator/emulator_boot.cpp
    emulator/emulator_bus.cpp
    emulator/emulator_commands.cpp
    emulator/emulator_events.cpp
    emulator/emulator_faults.cpp
    emulator/emulator_orders.cpp
    emulator/emulator_pace.cpp
    emulator/emulator_program.cpp
    emulator/emulator_scenario.cpp
    emulator/emulator_scene.cpp
    emulator/emulator_usb.cpp
    emulator/emulator_words.cpp
  LINKS emulator GTest::gtest_main)
set_target_properties(emulator_test PROPERTIES AUTOMOC OFF)
target_compile_definitions(emulator_test PRIVATE
  EMULATOR_PROGRAM="$<TARGET_FILE:mouse-emulator>"
  DEFAULT_SCENARIO="${PROJECT_SOURCE_DIR}/emulator/default.scenario"
  TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
add_dependencies(emulator_test mouse-emulator)
