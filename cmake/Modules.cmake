# add_module(name SOURCES a.cpp … [FORMS a.ui …] [LINKS targets …])
# A static library of the folder it stands in. Warnings and definitions are set here once. Includes are
# written from the top of the tree; a module sees another one's headers only by linking to it, so an
# include that runs upward does not link.
function(morlen_target target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Woverloaded-virtual -Wnon-virtual-dtor -Wshadow=local)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()

function(add_module name)
  cmake_parse_arguments(module "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${module_SOURCES})
  morlen_target(${name})
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_FOREACH QT_DEPRECATED_WARNINGS)
  target_link_libraries(${name} PUBLIC ${module_LINKS})
endfunction()

# add_morlen_test(name SOURCES … LINKS … [XSERVER])
# A QtTest or GoogleTest program. XSERVER: it needs a window system and gets an Xvfb of its own.
function(add_morlen_test name)
  cmake_parse_arguments(test "XSERVER" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
  add_executable(${name} ${test_SOURCES})
  morlen_target(${name})
  target_link_libraries(${name} PRIVATE ${test_LINKS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(test_XSERVER)
    add_test(NAME ${name} COMMAND xvfb-run -a -s "-screen 0 1600x1200x24" $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endif()
  if(NOT test_TIMEOUT)
    set(test_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${test_TIMEOUT} LABELS "${test_LABELS}")
endfunction()
