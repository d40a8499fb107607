// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The style sheets of the program, composed from a page's picture folder, colours of the catalogue and names
// of pictures. Replacing the pictures and the colour keys gives another skin. `folder` ends with "/", a
// colour is the text "r,g,b". The templates contain the ";" after a colour. Set sheets on leaf widgets before
// they are shown: a sheet on a window restyles all of its children.
#pragma once

#include <QColor>
#include <QString>

namespace style
{

// Folder of a page's pictures beside the program: "/Picture/" + page + "/".
QString pictureFolder(const QString &page);
// A colour of the catalogue's general section.
QString color(const char *key);
// The outline of what can be used, the same as in the pictures: 3 to 1 on every surface.
QColor outlineColor();

QString windowBackground(const QString &folder, const QString &frameName);
QString dialogBackground(const QString &folder, const QString &frameName);
// Stem, stem + "Hover", stem + "Click".
QString titleButton(const QString &folder, const QString &stem);
// Append to titleButton(): the button while it is disabled, stem + "Off".
QString titleButtonOff(const QString &folder, const QString &stem);
// Stem and stem + "Click", which is shown under the pointer.
QString arrow(const QString &folder, const QString &stem);
// Stem, stem + "Hover", stem + "Click".
QString textButton(const QString &folder, const QString &color, const QString &stem);
// Append to textButton(): the button while it is disabled, stem + "Off".
QString textButtonOff(const QString &folder, const QString &stem);
// The same on a QPushButton, and stem + "Off" while it is disabled.
QString pushButton(const QString &folder, const QString &color, const QString &stem);
QString label(const QString &color);
// The title of a page or of a section of it.
QString heading();
QString labelPicture(const QString &folder, const QString &name);
// Append to labelPicture(): the picture under the pointer.
QString hoverPicture(const QString &folder, const QString &name);
QString tile(const QString &folder, const QString &name);
// Append to tile(): its hovered and pressed states.
QString tileHover();
QString checkBox(const QString &folder, const QString &color);
// "Radio" and "RadioCheck", each + "Hover" and + "Off".
QString radioButton(const QString &folder, const QString &color);
QString comboBox(const QString &folder, const QString &textColor, const QString &selectColor);
// Append to comboBox() for a box of another size: its background picture.
QString comboBoxBack(const QString &folder, const QString &name);
QString comboList(const QString &selectColor);
QString sectionTitle(const QString &folder, const QString &objectName);
QString flatLink(const QString &color);

// A label that shows only a picture, stretched to its size.
QString stretchedPicture(const QString &folder, const QString &name);
// One of several choices: stem, and stem + "Hover", + "Check" while checked, + "Click" while pressed.
QString stateButton(const QString &folder, const QString &stem, const QString &color,
                    const QString &checkedColor);
// The named frame with an unscaled picture in its middle.
QString areaPicture(const QString &folder, const QString &frameName, const QString &name);
// A text on a picture of the label's size.
QString labelPlate(const QString &folder, const QString &color, const QString &name);
// A scroll area with a transparent background and a slim scroll handle.
QString scrollArea();
// A list view on the page's own ground, with the same handle.
QString listView();
// A navigation button: its own icon over the plates that all of them share, with its name below.
QString navigationButton(const QString &folder, const QString &icon);
// The filled part of the battery's bar.
QString batteryBar(const QString &chunkColor);
// A line that fills from left to right.
QString progressBar();
// A frame around one line of text.
QString strip(const QString &objectName);
// A frame that has an outline and nothing else.
QString outline(const QString &objectName, const QColor &color, int radius);
// A hairline in a colour at that opacity (0..255).
QString hairline(const QString &color, int opacity);
// A switch: "Close" and, while it is on, "Open", each + "Hover" and + "Click".
QString switchButton(const QString &folder);
// A horizontal slider with a filled part left of the handle.
QString slider();
// The same for a CentredSlider, which fills itself.
QString centredSlider();
// A label of 24 pixels in place of a slider that has nothing to set.
QString emptySlider();
// The caption of a control, dim while disabled.
QString caption();
// A number beside a slider: it cannot be typed into, so it has no frame.
QString readout();
// Read-only lines to copy, such as a command.
QString quotedText();
// Lines to read, without a surface of their own.
QString instructions();
// Lines below a choice that say what it does.
QString description();
// A field to type in.
QString lineEdit();
// A number to type or to step: "Up" and "Down".
QString spinBox(const QString &folder);
// A number to type that has buttons of its own beside it.
QString numberBox();
// The toolkit's dialogs for a file and for a colour, with "Up" and "Down" in its number fields and the
// pictures of the buttons "Back", "Forward", "Parent" and "NewFolder".
QString toolkitDialog(const QString &folder);

// A DPI stage, and below it the bar in its colour `fill`; selected ones use other pictures.
QString stageButton(const QString &folder, const QString &color, bool selected);
// A stage that will be selected when the marker is dropped.
QString stageTarget(const QString &folder, const QString &color);
QString colorBar(const QString &folder, const QString &fill, bool selected);
// A label with a horizontally repeated picture.
QString tiledPicture(const QString &folder, const QString &name);

} // namespace style
