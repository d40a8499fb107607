# SPDX-FileCopyrightText: 2026 The Morlen authors
# SPDX-License-Identifier: MIT
#
# Everything that makes one skin differ from another: colours, radii, and the looks that the states of a
# control take. The pictures name these and hold no colour of their own. The texts that widgets draw take
# their colours from the Option section of the catalogue; a new skin changes both.

# Ground and the three steps of depth above it; raised is a control under the pointer.
set(ground "#121517")
set(groundLow "#0d0f11")
set(surface1 "#191d20")
set(surface2 "#21272a")
set(surface3 "#2b3236")
set(raised "#39434a")

# Hairlines, lines of decoration, and the line that outlines what can be used: 3 to 1 on every surface.
set(line "#2f373b")
set(lineFaint "#56626a")
set(lineStrong "#6f7d86")

# Ink: text and icons. The dim one keeps 4.5 to 1 on every surface; the faint one is for decoration alone,
# the one that is off for controls that cannot be used.
set(ink "#ecf1ef")
set(inkDim "#a9b4b1")
set(inkFaint "#66726f")
set(inkOff "#454e52")

# The accent, and its darker steps for areas that carry text.
set(accent "#00ff99")
set(accentMid "#00a468")
set(accentDeep "#00704a")
set(accentDark "#0f4a36")
set(accentTint "#17362b")

set(warning "#ffb454")
set(danger "#ff6b5e")
set(dangerDeep "#982b22")
set(dangerDark "#5c1a15")

# Bare metal of plugs.
set(metalHigh "#8d999e")
set(metalLow "#4b565b")

# Radii in pixels: window and cards, controls, small marks.
set(radiusWindow 12)
set(radiusCard 12)
set(radiusControl 8)
set(radiusMark 4)

# Looks: one row for each state of each kind of control. plate: its area; edge: its outline, with edgeWidth;
# ink: its icon; tint: the fill of an icon's body; bar: the mark of a checked control.
set(lookDefaults plate=none edge=none edgeWidth=1 ink=${inkDim} tint=none bar=none)

set(look_ghost ink=${inkDim})
set(look_ghostHover plate=${surface3} ink=${ink})
set(look_ghostClick plate=${surface1} edge=${lineStrong} ink=${ink})
set(look_closeHover plate=${dangerDeep} ink=${ink})
set(look_closeClick plate=${surface1} edge=${danger} ink=${danger})

set(look_key plate=${surface3} edge=${lineStrong} ink=${inkDim})
set(look_keyHover plate=${raised} edge=${inkDim} ink=${ink})
set(look_keyClick plate=${groundLow} edge=${accent} ink=${ink})
set(look_keyOff edge=${line} ink=${inkOff})
set(look_keyCheck plate=${accentTint} edge=${accent} edgeWidth=2 ink=${accent} bar=${accent})

set(look_stage plateTop=${surface3} plate=${surface2} edge=${lineStrong} ink=${ink} bar=${lineStrong})
set(look_stageHover plateTop=${raised} plate=${surface3} edge=${inkDim} ink=${ink} bar=${inkDim})
set(look_stageClick plateTop=${groundLow} plate=${surface1} edge=${accent} ink=${ground} bar=${accentMid})
set(look_stageTarget plateTop=${raised} plate=${surface3} edge=${accent} edgeWidth=2 ink=${ink} bar=${accent})
set(look_stageCheck plateTop=${accentDark} plate=${accentTint} edge=${accent} edgeWidth=2 ink=${ink} bar=${accent})

set(look_colorBar edge=${lineStrong} corner=1.5 seam=none seamOpacity=0)
set(look_colorBarHover edge=${ink} edgeWidth=2 corner=1 seam=none seamOpacity=0)
set(look_colorBarCheck edge=${ink} edgeWidth=2 corner=1 seam=${groundLow} seamOpacity=1)
set(look_colorBarCheckHover edge=${accent} edgeWidth=2 corner=1 seam=${ink} seamOpacity=1)
# Marks on the picture of a mouse: they stand on a lit shell and must be seen there.
set(look_mark plate=${groundLow} edge=${accent} edgeWidth=2)
set(look_markHover plate=${surface3} edge=${ink} edgeWidth=2)
set(look_markClick plate=${accentDeep} edge=${ink} edgeWidth=2)
set(look_markCheck plate=${accent} edge=${groundLow} edgeWidth=2)
set(look_badge plate=${surface3} edge=${lineStrong})

set(look_primary plate=${accentDeep} edge=${accentMid})
set(look_primaryHover plate=${accentDeep} edge=${accent} edgeWidth=2)
set(look_primaryClick plate=${accentDark} edge=${accent})
set(look_primaryOff plate=${lineStrong} edge=${lineStrong}) # below black text

set(look_done plate=${accentTint} edge=${accent})
set(look_danger plate=${dangerDeep} edge=${danger})
set(look_dangerHover plate=${dangerDeep} edge=${ink} edgeWidth=2)
set(look_dangerClick plate=${dangerDark} edge=${danger})

set(look_nav)
set(look_navHover plate=${surface2} edge=${line})
set(look_navCheck plate=${surface3} edge=${lineStrong} bar=${accent})
set(look_navIcon ink=${inkDim})
set(look_navIconHover ink=${ink})
set(look_navIconCheck ink=${accent} tint=${accentDark})
set(look_navIconOff ink=${inkOff})

set(look_arrow plate=none edge=none ink=${inkDim})
set(look_arrowClick plate=${surface2} edge=${lineStrong} ink=${accent})

# Looks of a mouse seen from above: a lit body, and an outline when its radio is silent.
set(look_mouse
  cardTop=${surface3} cardLow=${surface1} "cardEdge=#3a4448" cardDash=none halo=0.20
  "shellEdge=#1b2023" "shellMid=#3a4347" "shellHigh=#566167" "shellLow=#23292c"
  "outline=#7f8c92" outlineWidth=1 keyRim=4 "seam=#101315" "glint=#7b878c" glintOpacity=0.55
  "pit=#0b0d0e" "wheel=#4a5459" light=${accent} glow=0.85 shadow=0.75)
set(look_mouseAway
  cardTop=${ground} cardLow=${ground} cardEdge=${lineFaint} cardDash=4,4 halo=0
  shellEdge=${surface1} shellMid=${surface1} shellHigh=${surface1} shellLow=${surface1}
  outline=${lineFaint} outlineWidth=2 keyRim=6 seam=${lineFaint} glint=${surface1} glintOpacity=0
  pit=${surface1} wheel=${ground} light=${lineFaint} glow=0 shadow=0)
