# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
#
# skin_picture(page name template width height [look=NAME] [icon=NAME] [art=FILE] [under=TEMPLATE] [key=value …])
# Fills in one SVG template and has it rendered to Picture/<page>/<name>.png and to <name>@2x.png. The
# template is filled in while configuring and written only when it changes, so a new colour renders again
# the pictures that show it and no others. The template under a picture is its ground, which is
# dithered (tools/pack/Ground.h); its colours are those of the palette with "Bright" behind their names.
#
# skin_states(page stem template width height suffix=look … WITH key=value …)
# One picture for each suffix, from one template.

# MORLEN_PICTURES: the folder of another tree's pictures, which this one then shares instead of drawing its own.
set(MORLEN_PICTURES "" CACHE PATH "Folder with pictures that are drawn; empty: draws them")

find_program(RSVG_CONVERT rsvg-convert REQUIRED)

# Grounds are drawn in so many times their light; GroundLight of tools/pack/Ground.h is the same.
foreach(colour ground groundLow surface1 surface2 surface3)
  set(channels)
  foreach(at 1 3 5)
    string(SUBSTRING ${${colour}} ${at} 2 digits)
    math(EXPR channel "4 * 0x${digits}")
    list(APPEND channels ${channel})
  endforeach()
  string(JOIN "," channels ${channels})
  set(${colour}Bright "rgb(${channels})")
endforeach()

function(skin_picture page name template w h)
  set(under "")
  set(icon "")
  set(art "")
  set(settings ${lookDefaults})
  foreach(setting IN LISTS ARGN)
    if(setting MATCHES "^look=(.*)$")
      list(APPEND settings ${look_${CMAKE_MATCH_1}})
    else()
      list(APPEND settings "${setting}")
    endif()
  endforeach()
  foreach(setting IN LISTS settings)
    string(REGEX MATCH "^([A-Za-z0-9]+)=(.*)$" matched "${setting}")
    set(${CMAKE_MATCH_1} "${CMAKE_MATCH_2}")
  endforeach()

  # An outline lies inside the picture, so its centre line is half its width from the border.
  math(EXPR edgeW "${w} - ${edgeWidth}")
  math(EXPR edgeH "${h} - ${edgeWidth}")
  math(EXPR midX "${w} / 2")
  math(EXPR midY "${h} / 2")
  if(edgeWidth EQUAL 2)
    set(inset 1)
  else()
    set(inset 0.5)
  endif()

  if(icon)
    skin_piece(icons/${icon}.svg icon)
  endif()
  if(art)
    skin_piece(mice/paint.svg paint)
    skin_piece(${art} art)
  endif()
  set(svg ${CMAKE_CURRENT_BINARY_DIR}/${page}/${name}.svg)
  configure_file(${template}.svg ${svg} @ONLY)

  set(single ${MORLEN_PRODUCT_DIR}/Picture/${page}/${name}.png)
  set(double ${MORLEN_PRODUCT_DIR}/Picture/${page}/${name}@2x.png)
  install(FILES ${single} ${double} DESTINATION ${MORLEN_DATA_DIR}/Picture/${page})
  if(MORLEN_PICTURES)
    return()
  endif()
  set(drawGround)
  set(singleGround)
  set(doubleGround)
  set(groundFile)
  if(under)
    set(groundFile ${CMAKE_CURRENT_BINARY_DIR}/${page}/${name}-ground)
    configure_file(${under}.svg ${groundFile}.svg @ONLY)
    set(drawGround
      COMMAND ${RSVG_CONVERT} -o ${groundFile}.png ${groundFile}.svg
      COMMAND ${RSVG_CONVERT} --zoom 2 -o ${groundFile}@2x.png ${groundFile}.svg)
    set(singleGround --ground ${groundFile}.png)
    set(doubleGround --ground ${groundFile}@2x.png)
    set(groundFile ${groundFile}.svg)
  endif()
  add_custom_command(
    OUTPUT ${single} ${double}
    COMMAND ${RSVG_CONVERT} -o ${single} ${svg}
    COMMAND ${RSVG_CONVERT} --zoom 2 -o ${double} ${svg}
    ${drawGround}
    COMMAND pack-picture ${singleGround} ${single} ${doubleGround} ${double}
    DEPENDS ${svg} ${groundFile} pack-picture
    COMMENT "Drawing ${page}/${name}"
    VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY skin_files ${single} ${double})
endfunction()

# A piece of drawing that stands inside a template, with its own placeholders filled in.
macro(skin_piece file variable)
  file(READ ${file} ${variable})
  string(CONFIGURE "${${variable}}" ${variable} @ONLY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
endmacro()

function(skin_states page stem template w h)
  cmake_parse_arguments(states "" "" "WITH" ${ARGN})
  foreach(state IN LISTS states_UNPARSED_ARGUMENTS)
    string(REGEX MATCH "^([A-Za-z]*)=(.*)$" matched "${state}")
    skin_picture(${page} ${stem}${CMAKE_MATCH_1} ${template} ${w} ${h} look=${CMAKE_MATCH_2} ${states_WITH})
  endforeach()
endfunction()
