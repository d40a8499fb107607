# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
#
# add_host_tool(name SOURCES … [LINKS …])
# A program that runs while building. Where the build is for another machine, the programs are built for this one first,
# in host-tools/, or taken from the folder MORLEN_HOST_TOOLS.
set(MORLEN_HOST_TOOLS "" CACHE PATH "Folder with this machine's tools, for a build for another one; empty: builds them")
set(host_tools encode-catalogue make-firmware pack-picture)

function(add_host_tool name)
  cmake_parse_arguments(tool "" "" "SOURCES;LINKS" ${ARGN})
  if(NOT CMAKE_CROSSCOMPILING)
    add_executable(${name} ${tool_SOURCES})
    morlen_target(${name})
    target_link_libraries(${name} PRIVATE ${tool_LINKS})
    return()
  endif()
  add_executable(${name} IMPORTED GLOBAL)
  set(folder ${MORLEN_HOST_TOOLS})
  if(NOT folder)
    set(folder ${CMAKE_BINARY_DIR}/host-tools)
    add_dependencies(${name} host-tools)
  endif()
  set_target_properties(${name} PROPERTIES IMPORTED_LOCATION ${folder}/${name})
endfunction()

# The other machine's compiler, flags and libraries must not reach the tools.
if(CMAKE_CROSSCOMPILING AND NOT MORLEN_HOST_TOOLS)
  include(ExternalProject)
  set(made ${host_tools})
  list(TRANSFORM made PREPEND ${CMAKE_BINARY_DIR}/host-tools/)
  set(plain ${CMAKE_COMMAND} -E env --unset=CC --unset=CXX --unset=CFLAGS --unset=CXXFLAGS --unset=CPPFLAGS
    --unset=LDFLAGS --unset=PKG_CONFIG --unset=PKG_CONFIG_LIBDIR --unset=PKG_CONFIG_SYSROOT_DIR)
  ExternalProject_Add(host-tools
    SOURCE_DIR ${PROJECT_SOURCE_DIR}
    BINARY_DIR ${CMAKE_BINARY_DIR}/host-tools
    CONFIGURE_COMMAND ${plain} ${CMAKE_COMMAND} -S <SOURCE_DIR> -B <BINARY_DIR> -G ${CMAKE_GENERATOR}
      -DMORLEN_TOOLS_ONLY=ON -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=<BINARY_DIR>
    BUILD_COMMAND ${plain} ${CMAKE_COMMAND} --build <BINARY_DIR> --target ${host_tools}
    BUILD_ALWAYS ON
    BUILD_BYPRODUCTS ${made}
    INSTALL_COMMAND "")
endif()
