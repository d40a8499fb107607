# morlen_target(target): what every target has, the warnings and includes written from the top of the tree.
function(morlen_target target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Woverloaded-virtual -Wnon-virtual-dtor -Wshadow=local)
  if(CMAKE_UNITY_BUILD) # the compiler takes files that one source includes for headers
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()

set(morlen_qt_definitions QT_NO_CAST_FROM_ASCII QT_NO_FOREACH QT_DEPRECATED_WARNINGS)

# add_precompiled(name LINKS targets … HEADERS headers … [DEFINITIONS …])
# A target whose precompiled headers others take by use_precompiled(). The compiler takes them only where flags and
# definitions are the same; definitions that the headers never ask for may differ. An executable is compiled like a
# library for that.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE ${CMAKE_CXX_COMPILE_OPTIONS_PIC})
function(add_precompiled name)
  cmake_parse_arguments(precompiled "" "" "LINKS;HEADERS;DEFINITIONS" ${ARGN})
  if(NOT MORLEN_PCH)
    return()
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(TOUCH ${source})
  add_library(${name} OBJECT ${source})
  morlen_target(${name})
  target_compile_definitions(${name} PRIVATE ${precompiled_DEFINITIONS})
  target_link_libraries(${name} PRIVATE ${precompiled_LINKS})
  target_precompile_headers(${name} PRIVATE ${precompiled_HEADERS})
  set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
endfunction()

# use_precompiled(target name): as if each source of the target began with the headers of add_precompiled(name).
function(use_precompiled target name)
  if(TARGET ${name})
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()

# add_module(name SOURCES a.cpp … LINKS targets …)
# A static library of the folder it stands in, with the warnings and definitions of all. scripts/check_includes
# holds its includes against LINKS.
function(add_module name)
  cmake_parse_arguments(module "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${module_SOURCES})
  morlen_target(${name})
  target_compile_definitions(${name} PRIVATE ${morlen_qt_definitions})
  target_link_libraries(${name} PUBLIC ${module_LINKS})
  if("Qt5::Widgets" IN_LIST module_LINKS)
    use_precompiled(${name} precompiled_widgets)
  elseif("Qt5::Core" IN_LIST module_LINKS OR "Qt5::Gui" IN_LIST module_LINKS)
    use_precompiled(${name} precompiled_core)
  endif()
endfunction()

# add_test_row(row [XSERVER] [SESSION] COMMAND program arguments …)
# A test of ctest's, with 120 s. XSERVER: it needs a window system and gets an Xvfb of its own. SESSION: the same, in a
# session with an accessibility bus, which the program always joins. A test takes two of
# ctest's processors, so that one that waits for nearly all of its time can take one.
function(add_test_row row)
  cmake_parse_arguments(test "XSERVER;SESSION" "" "COMMAND" ${ARGN})
  list(POP_FRONT test_COMMAND program)
  set(environment QT_QPA_PLATFORM=offscreen)
  set(server)
  if(test_XSERVER OR test_SESSION)
    set(environment QT_XCB_GL_INTEGRATION=none)
    # A server that starts anew behind its last client refuses the next one meanwhile: the program asks the server
    # for its size before it shows anything.
    set(server xvfb-run -a -s "-screen 0 1600x1200x24 -noreset")
  endif()
  if(test_SESSION)
    list(PREPEND server ${PROJECT_SOURCE_DIR}/tests/support/in_session)
  endif()
  add_test(NAME ${row} COMMAND ${server} $<TARGET_FILE:${program}> ${test_COMMAND})
  set_tests_properties(${row} PROPERTIES TIMEOUT 300 PROCESSORS 2 ENVIRONMENT "${environment}")
endfunction()

# add_gtest(name SOURCES … LINKS … [DEFINITIONS …] [DEPENDS …])
# A GoogleTest program, and the test of ctest's that runs it.
function(add_gtest name)
  cmake_parse_arguments(test "" "" "SOURCES;LINKS;DEFINITIONS;DEPENDS" ${ARGN})
  add_executable(${name} ${test_SOURCES})
  morlen_target(${name})
  target_compile_definitions(${name} PRIVATE ${test_DEFINITIONS})
  target_link_libraries(${name} PRIVATE ${test_LINKS} GTest::gtest_main)
  use_precompiled(${name} precompiled_gtest)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests AUTOMOC OFF)
  if(test_DEPENDS)
    add_dependencies(${name} ${test_DEPENDS})
  endif()
  add_test_row(${name} COMMAND ${name})
endfunction()

# add_test_folder(name FOLDER folder [CLASSES …] [XSERVER …] [OTHERS …] LINKS … [SOURCES …] [DEFINITIONS …]
#   [DEPENDS …])
# A program with the QtTest classes of a folder, and for each class a test of ctest's with its name: CLASSES run
# off screen, XSERVER on a server, OTHERS get their tests from the caller.
function(add_test_folder name)
  cmake_parse_arguments(test "" "FOLDER" "CLASSES;XSERVER;OTHERS;LINKS;SOURCES;DEFINITIONS;DEPENDS" ${ARGN})
  set(sources ${test_CLASSES} ${test_XSERVER} ${test_OTHERS})
  list(TRANSFORM sources PREPEND ${test_FOLDER}/)
  list(TRANSFORM sources APPEND .cpp)
  add_executable(${name} ${sources} ${test_SOURCES})
  morlen_target(${name})
  target_compile_definitions(${name} PRIVATE ${test_DEFINITIONS})
  target_link_libraries(${name} PRIVATE testmain ${test_LINKS})
  use_precompiled(${name} precompiled_test)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(test_DEPENDS)
    add_dependencies(${name} ${test_DEPENDS})
  endif()
  foreach(class ${test_CLASSES})
    add_test_row(${class} COMMAND ${name} ${class})
  endforeach()
  foreach(class ${test_XSERVER})
    add_test_row(${class} XSERVER COMMAND ${name} ${class})
  endforeach()
endfunction()
