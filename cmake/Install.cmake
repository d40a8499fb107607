# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
#
# The installed tree. The programs stand in MORLEN_PROGRAM_DIR and find their data beside themselves, as they do in
# the build folder: what lies beside them is a link into MORLEN_DATA_DIR. All links and the path to the library are
# relative, so the tree can be moved. A component is a package of debian/control and has its name.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME morlen)
set(MORLEN_PROGRAM_DIR ${CMAKE_INSTALL_LIBEXECDIR}/morlen)
set(MORLEN_LIBRARY_DIR ${CMAKE_INSTALL_LIBDIR}/morlen)
set(MORLEN_DATA_DIR ${CMAKE_INSTALL_DATADIR}/morlen)

# install_link(link target [COMPONENT name]): a relative link; both paths are below the prefix.
function(install_link link target)
  cmake_parse_arguments(link "" "COMPONENT" "" ${ARGN})
  if(NOT link_COMPONENT)
    set(link_COMPONENT ${CMAKE_INSTALL_DEFAULT_COMPONENT_NAME})
  endif()
  get_filename_component(folder ${link} DIRECTORY)
  get_filename_component(name ${link} NAME)
  file(RELATIVE_PATH path /prefix/${folder} /prefix/${target})
  set(made ${CMAKE_BINARY_DIR}/links/${folder}/${name})
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links/${folder})
  file(CREATE_LINK ${path} ${made} SYMBOLIC)
  install(FILES ${made} DESTINATION ${folder} COMPONENT ${link_COMPONENT})
endfunction()

# install_beside(name [COMPONENT name]): the file or folder of MORLEN_DATA_DIR is found beside the programs.
function(install_beside name)
  install_link(${MORLEN_PROGRAM_DIR}/${name} ${MORLEN_DATA_DIR}/${name} ${ARGN})
endfunction()
