// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The look of the program: every style sheet there is, composed from a page's picture folder, colours of
// the catalogue and names of pictures. Replacing the pictures and the colour keys gives another skin.
// `folder` ends with "/", a colour is the text "r,g,b". The ";" behind a colour is part of the templates.
// Sheets go on leaves before they are shown: a sheet on a whole window restyles all that is in it.
#pragma once

#include <QString>

namespace style
{

// Folder of a page's pictures beside the program: "/Picture/" + page + "/".
QString pictureFolder(const QString &page);
// A colour of the catalogue's general section.
QString color(const char *key);

QString windowBackground(const QString &folder, const QString &frameName);
QString dialogBackground(const QString &folder, const QString &frameName);
// Stem, stem + "Hover", stem + "Click".
QString titleButton(const QString &folder, const QString &stem);
// Stem and stem + "Click", which is shown under the pointer.
QString arrow(const QString &folder, const QString &stem);
// Stem, stem + "Hover", stem + "Click".
QString textButton(const QString &folder, const QString &color, const QString &stem);
QString label(const QString &color);
QString labelPicture(const QString &folder, const QString &name);
QString tile(const QString &folder, const QString &name);
// Goes behind the sheet of a tile: the pointer is over it, or presses it.
QString tileHover();
QString checkBox(const QString &folder, const QString &color);
QString comboBox(const QString &folder, const QString &textColor, const QString &selectColor);
// Goes behind the sheet of a combo box of another size than most: the picture that fits it.
QString comboBoxBack(const QString &folder, const QString &name);
QString comboList(const QString &selectColor);
QString sectionTitle(const QString &folder, const QString &objectName);
QString flatLink(const QString &color);

// A label that is nothing but a picture, stretched to it.
QString stretchedPicture(const QString &folder, const QString &name);
// One of several choices: stem, stem + "Hover", "Check" while it is the chosen one, "Click" while pressed.
QString stateButton(const QString &folder, const QString &stem, const QString &color,
                    const QString &checkedColor);
// The named frame with a picture in its middle, as it is.
QString areaPicture(const QString &folder, const QString &frameName, const QString &name);
// A text on a picture of the label's size.
QString labelPlate(const QString &folder, const QString &color, const QString &name);
// A scrolling list: a slim handle on the ground that is there.
QString scrollArea();
// A way to a page: its own icon on the plates that all ways share.
QString navigationButton(const QString &folder, const QString &icon);
// The filled part of the battery's bar.
QString batteryBar(const QString &chunkColor);
// A hairline in a colour at that opacity (0..255).
QString hairline(const QString &color, int opacity);
// A thumb on a bar of which no side counts as filled: Groove; Thumb, ThumbHover, ThumbClick, ThumbOff.
QString thumbSlider(const QString &folder);
// A switch: "Close" and, while it is on, "Open", each + "Hover" and + "Click".
QString switchButton(const QString &folder);
// A horizontal slider whose way so far is filled.
QString slider();
// What stands in the place of such a slider of 24 pixels that has nothing to set.
QString emptySlider();
// What a control is called, dim while there is nothing to set.
QString caption();
// A number beside a slider, and one in a frame of its own.
QString readout();
QString framedReadout();
// Several lines to read and to copy, such as a command.
QString quotedText();
// A field to type in.
QString lineEdit();
// A number to type or to step: "Up" and "Down".
QString spinBox(const QString &folder);

// A DPI stage, and the bar in its colour `fill` below it; the selected ones have pictures of their own.
QString stageButton(const QString &folder, const QString &color, bool selected);
QString colorBar(const QString &folder, const QString &fill, bool selected);
// A label with a picture that repeats to the right.
QString tiledPicture(const QString &folder, const QString &name);

} // namespace style
