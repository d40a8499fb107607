// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/StyleSheets.h"

#include "catalogue/DeviceCatalogue.h"
#include "environment/DataRoot.h"

#include <initializer_list>

namespace
{

// In the templates %P is the picture folder, and %1, %2, … are names and colours.
QString compose(const char *text, const QString &folder, std::initializer_list<QString> values)
{
    QString sheet = QLatin1String(text);
    int number = 0;
    for (const QString &value : values)
        sheet.replace(QStringLiteral("%%1").arg(++number), value);
    return sheet.replace(QLatin1String("%P"), folder);
}

constexpr char WindowBackground[] = "#%1{border-image: url(%PMainBack.png);}";
constexpr char DialogBackground[] = "#%1{border:0px;background-position:center;background-repeat:no-repeat;"
                                    "background-image: url(%PBackGround.png);}";
constexpr char TitleButton[] =
    "QToolButton{border:0px;background-image: url(%P%1.png);background-position:center;"
    "background-repeat:no-repeat;}QToolButton:hover{background-image: url(%P%1Hover.png);}"
    "QToolButton:pressed{background-image: url(%P%1Click.png);}";
constexpr char TitleButtonOff[] = "QToolButton:disabled{background-image: url(%P%1Off.png);}";
constexpr char Arrow[] = "QToolButton{border-image: url(%P%1.png);}"
                         "QToolButton:hover{border-image: url(%P%1Click.png);}";
constexpr char TextButton[] =
    "QToolButton{border:0px;background-position:center;background-repeat:no-repeat;color: rgb(%2;);"
    "border-image: url(%P%1.png);}QToolButton:pressed{border-image: url(%P%1Click.png); }";
constexpr char TextButtonHover[] = "QToolButton:hover:!pressed{border-image: url(%P%1Hover.png);}";
constexpr char TextButtonOff[] = "QToolButton:disabled{color: rgb(%2);border-image: url(%P%1Off.png);}";
constexpr char Label[] = "QLabel{color: rgb(%1;);}";
// The toolkit divides a weight by eight: 456 is QFont::Medium, 500 would be drawn bold.
constexpr char Heading[] = "QLabel{font-size: 15px;font-weight: 456;}";
constexpr char LabelPicture[] = "QLabel{border:0px;background-position:center;background-repeat:no-repeat;"
                                "background-image: url(%P%1);}";
constexpr char Tile[] = "QToolButton{border:0px;background-position:center;background-repeat:no-repeat;"
                        "background-image: url(%P%1);color: rgb(255, 255, 255);}";
constexpr char TileHover[] = "QToolButton:hover{border: 2px solid rgb(%1);border-radius: 12px;}"
                             "QToolButton:pressed{border: 4px solid rgb(%1);border-radius: 12px;}";
constexpr char CheckBox[] = "QCheckBox{color: rgb(%1;);}"
                            "QCheckBox::indicator:checked {image: url(%PCheckBoxCheck.png);}"
                            "QCheckBox::indicator:unchecked {image: url(%PCheckBox.png);}";
// The toolkit loads @2x pictures for background-image and border-image but not for `image`.
constexpr char CheckBoxMarks[] =
    "QCheckBox{outline: none;}" // the focus has a ring
    "QCheckBox::indicator{width: 18px;height: 18px;background-position: center;"
    "background-repeat: no-repeat;}"
    "QCheckBox::indicator:checked{image: none;background-image: url(%PCheckBoxCheck.png);}"
    "QCheckBox::indicator:unchecked{image: none;background-image: url(%PCheckBox.png);}"
    "QCheckBox::indicator:checked:hover{background-image: url(%PCheckBoxCheckHover.png);}"
    "QCheckBox::indicator:unchecked:hover{background-image: url(%PCheckBoxHover.png);}";
constexpr char RadioButton[] =
    "QRadioButton{color: rgb(%1);outline: none;spacing: 6px;}QRadioButton:disabled{color: rgb(%2);}"
    "QRadioButton::indicator{width: 18px;height: 18px;background-position: center;"
    "background-repeat: no-repeat;}"
    "QRadioButton::indicator:unchecked{background-image: url(%PRadio.png);}"
    "QRadioButton::indicator:checked{background-image: url(%PRadioCheck.png);}"
    "QRadioButton::indicator:unchecked:hover{background-image: url(%PRadioHover.png);}"
    "QRadioButton::indicator:checked:hover{background-image: url(%PRadioCheckHover.png);}"
    "QRadioButton::indicator:unchecked:disabled{background-image: url(%PRadioOff.png);}"
    "QRadioButton::indicator:checked:disabled{background-image: url(%PRadioCheckOff.png);}";
constexpr char ComboBox[] =
    "QComboBox{border: 1px solid gray; color: rgb(%1); border-image: url(%PComboboxBack.png);}"
    "QComboBox::drop-down:button{border-radius:5px; background:rgb(215,219, 222);} "
    "QComboBox::down-arrow{image: url(%PMenu.png); right: 8px; }"
    "QComboBox::down-arrow:on{ image: url(%PMenuClicked.png);}"
    "QComboBox QAbstractItemView::item{height:25px;}"
    "QComboBox QAbstractItemView {outline: 0px solid gray; border: 1px  solid gray;color: rgb(%2); "
    "border-image: url(%PComboboxTextBack.png);selection-background-color: rgb(%2); }";
constexpr char Groove[] = "66,76,83";
constexpr char OffInk[] = "102,114,111"; // text of what cannot be used, dimmer than any other
// Removes the drop-down button's frame and keeps the text off the rounded end. The pictures contain the
// outline. combobox-popup: 0 gives a list that scrolls; a menu would show all rows.
constexpr char ComboBoxFinish[] =
    "QComboBox{border: 0px;padding-left: 9px;combobox-popup: 0;}"
    "QComboBox::drop-down:button{border: 0px;width: 28px;background-color: transparent;"
    "background-position: center;background-repeat: no-repeat;}"
    "QComboBox::drop-down:enabled{background-image: url(%PMenu.png);}"
    "QComboBox::drop-down:enabled:on{background-image: url(%PMenuClicked.png);}"
    "QComboBox::down-arrow,QComboBox::down-arrow:on{image: none;}"
    "QComboBox QAbstractItemView{border: 0px;border-image: none;background: transparent;color: rgb(%1);"
    "padding: 5px;}"
    "QComboBox:disabled{border: 1px solid rgb(%3);border-radius: 6px;border-image: none;"
    "color: rgb(%2);padding-left: 8px;}";
constexpr char ComboBoxBack[] = "QComboBox{border-image: url(%P%1);}";
// Dark text on the selection's colour, for contrast.
constexpr char ComboListFinish[] = "QListView::item:selected{color: rgb(%1);border-radius: 4px;}"
                                   "QListView::item:hover{color: rgb(%1);border-radius: 4px;}";
constexpr char ComboListScroll[] =
    "QScrollBar:vertical{width: 10px;background: transparent;}"
    "QScrollBar::handle:vertical{background-color: rgb(117, 117, 117);border-radius: 3px;min-height: 30px;}"
    "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height: 0px;}"
    "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background: transparent;}";
constexpr char ComboList[] = "QListView::item:selected{background-color: rgb(%1);}"
                             "QListView::item:hover{background-color: rgb(%1);}";
constexpr char SectionTitle[] = "#%1{border-image: url(%PTitle.png);}";
constexpr char FlatLink[] = "QPushButton{border:none;background:transparent;color: rgb(%1;);}";
constexpr char StretchedPicture[] = "QLabel{border-image: url(%P%1);}";
constexpr char StateButton[] = "QToolButton{border:0px;color: rgb(%2);border-image: url(%P%1.png);}"
                               "QToolButton:hover{border-image: url(%P%1Hover.png);}"
                               "QToolButton:checked{color: rgb(%3);border-image: url(%P%1Check.png);}"
                               "QToolButton:pressed{border-image: url(%P%1Click.png);}";
constexpr char AreaPicture[] = "#%1{border:0px;background-position:center;background-repeat:no-repeat;"
                               "background-image: url(%P%2);}";
constexpr char LabelPlate[] = "QLabel{color: rgb(%2);border-image: url(%P%1);}";
// The icon picture has the button's size, so that border-image draws it over the plate.
constexpr char NavigationButton[] =
    "QToolButton{border:0px;background-position:center;background-repeat:no-repeat;"
    "background-image: url(%PNavButton.png);border-image: url(%P%1.png);}"
    "QToolButton:hover{background-image: url(%PNavButtonHover.png);border-image: url(%P%1Hover.png);}"
    "QToolButton:checked{background-image: url(%PNavButtonChecked.png);border-image: url(%P%1Checked.png);}"
    "QToolButton:disabled{border-image: url(%P%1Off.png);}";
// The name stands under the icon.
constexpr char NavigationName[] = "QToolButton{padding-top: 30px;color: rgb(%2);}"
                                  "QToolButton:hover,QToolButton:checked{color: rgb(%1);}"
                                  "QToolButton:disabled{color: rgba(%2,90);}";
constexpr char BatteryBar[] = "#progressBar{border: none;background-color: transparent;}"
                              "#progressBar::chunk {background-color: rgb(%1);}";
constexpr char ProgressBar[] = "QProgressBar{border: none;border-radius: 3px;background-color: rgb(%1);}"
                               "QProgressBar::chunk{border-radius: 3px;background-color: rgb(%2);}";
constexpr char Strip[] = "#%1{border: 1px solid rgb(%2);border-radius: 6px;background-color: rgb(%3);}";
constexpr char Hairline[] = "QFrame{border:0px;background-color: rgba(%1,%2);}";

constexpr char UnfilledSlider[] =
    "QSlider::sub-page:horizontal,QSlider::sub-page:horizontal:disabled{background: transparent;}";
// Shows the handle only; the scroll bar needs no background.
constexpr char ScrollArea[] = "QScrollArea,QScrollArea>QWidget>QWidget{border:0px;background: transparent;}";
constexpr char ListView[] = "QAbstractItemView{border:0px;background: transparent;outline: none;}";
constexpr char ScrollHandle[] =
    "QScrollBar:vertical{width: 10px;margin: 0px;border: 0px;background: transparent;}"
    "QScrollBar::handle:vertical{background: rgb(117, 117, 117);border-radius: 3px;min-height: 30px;"
    "margin: 0px 2px;}"
    "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height: 0px;}"
    "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background: transparent;}";
constexpr char Outline[] = "#%1{border: 2px solid rgb(%2);border-radius: %3px;background: transparent;}";
constexpr char SwitchButton[] =
    "QToolButton{border:0px;background-position:center;background-repeat:no-repeat;"
    "background-image: url(%PClose.png);}QToolButton:hover{background-image: url(%PCloseHover.png);}"
    "QToolButton:pressed{background-image: url(%PCloseClick.png);}"
    "QToolButton:checked{background-image: url(%POpen.png);}"
    "QToolButton:checked:hover{background-image: url(%POpenHover.png);}"
    "QToolButton:checked:pressed{background-image: url(%POpenClick.png);}";
// %1 filled part, %2 handle, %3 background, %4 disabled parts, %5 groove.
constexpr char Slider[] = "QSlider::groove:horizontal{height: 4px;border-radius: 2px;background: rgb(%5);}"
                          "QSlider::groove:horizontal:disabled{background: rgba(%4,90);}"
                          "QSlider::sub-page:horizontal{height: 4px;border-radius: 2px;background: rgb(%1);}"
                          "QSlider::handle:horizontal{width: 12px;margin: -6px 0px;border: 2px solid rgb(%2);"
                          "border-radius: 8px;background: rgb(%2);}"
                          "QSlider::handle:horizontal:hover{border-color: rgb(%1);}"
                          "QSlider::handle:horizontal:pressed{border-color: rgb(%1);background: rgb(%1);}"
                          "QSlider::sub-page:horizontal:disabled{background: rgba(%4,90);}"
                          "QSlider::handle:horizontal:disabled{border-color: rgb(%4);background: rgb(%3);}";
constexpr char EmptySlider[] = "QLabel{margin: 10px 0px;border-radius: 2px;background: rgba(%1,40);}";
constexpr char Caption[] = "QLabel{color: rgb(%1);}QLabel:disabled{color: rgb(%2);}";
constexpr char Readout[] = "QSpinBox{border: 0px;background: transparent;color: rgb(%1);}";
constexpr char LineEdit[] = "QLineEdit{color: rgb(%1);background-color: rgb(%2);border: 1px solid rgb(%3);"
                            "border-radius: 6px;padding: 0px 8px;}";
constexpr char QuotedText[] =
    "QPlainTextEdit{color: rgb(%1);background-color: rgb(%2);border: 0px;border-radius: 6px;"
    "padding: 2px 4px;selection-color: rgb(%2);selection-background-color: rgb(%3);}";
constexpr char Instructions[] = "QTextEdit{color: rgb(%1);border: 0px;background: transparent;}";
constexpr char StageButton[] =
    "QToolButton{border:0px;border-radius:3px;background-position:center;background-repeat:no-repeat;"
    "background-image: url(%P%1);color: rgb(%2;);}";
constexpr char StageButtonStates[] = "QToolButton:hover{background-image: url(%P%1Hover.png);}"
                                     "QToolButton:pressed{background-image: url(%P%1Click.png);}";
constexpr char StageButtonChosen[] = "QToolButton{font-weight: bold;}";
constexpr char HoverPicture[] = "QLabel:hover{background-image: url(%P%1);}";
constexpr char ColorBar[] =
    "QToolButton{border:0px;border-radius:3px;background-position:center;background-repeat:no-repeat;"
    "background-image: url(%P%1.png);background-color: rgb(%2;);}";
constexpr char ColorBarStates[] = "QToolButton:hover{background-image: url(%P%1Hover.png);}";
constexpr char TiledPicture[] = "QLabel{border:0px;background-position:left;background-repeat:repeat-x;"
                                "background-image: url(%P%1);}";
constexpr char SpinBox[] =
    "QSpinBox{color: rgb(%1);background-color: rgb(%2);border: 1px solid rgb(%3);border-radius: 6px;"
    "padding: 0px 28px 0px 8px;}"
    "QSpinBox::up-button,QSpinBox::down-button{subcontrol-origin: border;width: 28px;border: 0px;"
    "background-position: center;background-repeat: no-repeat;}"
    "QSpinBox::up-button{subcontrol-position: top right;background-image: url(%PUp.png);}"
    "QSpinBox::down-button{subcontrol-position: bottom right;background-image: url(%PDown.png);}"
    "QSpinBox::up-button:hover{background-image: url(%PUpHover.png);}"
    "QSpinBox::down-button:hover{background-image: url(%PDownHover.png);}"
    "QSpinBox::up-button:off,QSpinBox::up-button:disabled{background-image: url(%PUpOff.png);}"
    "QSpinBox::down-button:off,QSpinBox::down-button:disabled{background-image: url(%PDownOff.png);}"
    "QSpinBox::up-arrow,QSpinBox::down-arrow{image: none;}"
    "QSpinBox:disabled{color: rgb(%4);border-color: rgb(%5);}";

constexpr char Description[] = "QTextEdit{color: rgb(%1);background: transparent;border: 0px;}";
constexpr char NumberBox[] = "QSpinBox{color: rgb(%1);background-color: rgb(%2);border: 1px solid rgb(%3);"
                             "border-radius: 6px;}";
// Buttons of any size, which pictures would distort.
constexpr char ToolkitDialog[] =
    "QPushButton{color: rgb(%1);background: palette(button);border: 1px solid rgb(%2);border-radius: 6px;"
    "padding: 6px 16px;}"
    "QPushButton:default{background: rgb(%4);border-color: rgb(%3);}"
    "QPushButton:hover{border-color: rgb(%1);}QPushButton:pressed{background: palette(base);}"
    "QFrame{border: 1px solid rgb(%2);}QLabel{border: 0px;color: rgb(%1);}"
    "QSpinBox,QLineEdit{min-height: 26px;}QComboBox{min-height: 30px;}"
    "QSplitter,QStackedWidget,QHeaderView,QFrame#frame{border: 0px;}"
    "QComboBox{color: rgb(%1);background: rgb(%5);border: 1px solid rgb(%2);border-radius: 6px;"
    "padding: 0px 8px;}QComboBox::drop-down{border: 0px;width: 28px;}"
    "QComboBox::down-arrow{image: url(%PDown.png);}QComboBox::down-arrow:hover{image: url(%PDownHover.png);}"
    "QTreeView,QListView{border-radius: 6px;padding: 4px;}"
    "QHeaderView::section{color: rgb(%1);background: transparent;border: 0px;"
    "border-bottom: 1px solid rgb(%2);padding: 4px;}";
constexpr char ToolkitButton[] =
    "QToolButton#%2{border: 0px;min-width: 32px;min-height: 32px;image: url(%P%1.png);}"
    "QToolButton#%2:hover{image: url(%P%1Hover.png);}"
    "QToolButton#%2:pressed{image: url(%P%1Click.png);}"
    "QToolButton#%2:disabled{image: url(%P%1Off.png);}";
constexpr char PrimaryPlate[] = "0,112,74"; // as in the pictures of the filled button

// Pictures of a file dialog's buttons.
constexpr std::pair<const char *, const char *> FileButtons[] = {{"Back", "backButton"},
                                                                 {"Forward", "forwardButton"},
                                                                 {"Parent", "toParentButton"},
                                                                 {"NewFolder", "newFolderButton"}};

QString listed(const QColor &color)
{
    return QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
}

} // namespace

namespace style
{

QString pictureFolder(const QString &page)
{
    return applicationFolder() + QStringLiteral("/Picture/") + page + QLatin1Char('/');
}

QColor outlineColor() { return {111, 125, 134}; }

QString color(const char *key) { return DeviceCatalogue().colour(key); }

QString windowBackground(const QString &folder, const QString &frameName)
{
    return compose(WindowBackground, folder, {frameName});
}

QString dialogBackground(const QString &folder, const QString &frameName)
{
    return compose(DialogBackground, folder, {frameName});
}

QString titleButton(const QString &folder, const QString &stem)
{
    return compose(TitleButton, folder, {stem});
}

QString titleButtonOff(const QString &folder, const QString &stem)
{
    return compose(TitleButtonOff, folder, {stem});
}

QString arrow(const QString &folder, const QString &stem) { return compose(Arrow, folder, {stem}); }

QString textButton(const QString &folder, const QString &color, const QString &stem)
{
    return compose(TextButton, folder, {stem, color}) + compose(TextButtonHover, folder, {stem});
}

QString textButtonOff(const QString &folder, const QString &stem)
{
    return compose(TextButtonOff, folder, {stem, QLatin1String(OffInk)});
}

QString pushButton(const QString &folder, const QString &color, const QString &stem)
{
    const QString sheet = textButton(folder, color, stem) + textButtonOff(folder, stem);
    return QString(sheet).replace(QLatin1String("QToolButton"), QLatin1String("QPushButton"));
}

QString label(const QString &color) { return compose(Label, {}, {color}); }

QString heading() { return label(color("LabelColor")) + QLatin1String(Heading); }

QString labelPicture(const QString &folder, const QString &name)
{
    return compose(LabelPicture, folder, {name});
}

QString tile(const QString &folder, const QString &name) { return compose(Tile, folder, {name}); }

QString tileHover() { return compose(TileHover, {}, {color("SliderColor")}); }

QString checkBox(const QString &folder, const QString &color)
{
    return compose(CheckBox, folder, {color}) + compose(CheckBoxMarks, folder, {});
}

QString radioButton(const QString &folder, const QString &color)
{
    return compose(RadioButton, folder, {color, QLatin1String(OffInk)});
}

QString comboBox(const QString &folder, const QString &textColor, const QString &selectColor)
{
    return compose(ComboBox, folder, {textColor, selectColor}) +
           compose(ComboBoxFinish, folder, {textColor, QLatin1String(OffInk), QLatin1String(Groove)});
}

QString comboBoxBack(const QString &folder, const QString &name)
{
    return compose(ComboBoxBack, folder, {name});
}

QString comboList(const QString &selectColor)
{
    return compose(ComboList, {}, {selectColor}) +
           compose(ComboListFinish, {}, {color("ComboxBackGroundColor")}) + QLatin1String(ComboListScroll);
}

QString sectionTitle(const QString &folder, const QString &objectName)
{
    return compose(SectionTitle, folder, {objectName});
}

QString flatLink(const QString &color) { return compose(FlatLink, {}, {color}); }

QString stretchedPicture(const QString &folder, const QString &name)
{
    return compose(StretchedPicture, folder, {name});
}

QString stateButton(const QString &folder, const QString &stem, const QString &color,
                    const QString &checkedColor)
{
    return compose(StateButton, folder, {stem, color, checkedColor});
}

QString areaPicture(const QString &folder, const QString &frameName, const QString &name)
{
    return compose(AreaPicture, folder, {frameName, name});
}

QString labelPlate(const QString &folder, const QString &color, const QString &name)
{
    return compose(LabelPlate, folder, {name, color});
}

QString scrollArea() { return QLatin1String(ScrollArea) + QLatin1String(ScrollHandle); }

QString listView() { return QLatin1String(ListView) + QLatin1String(ScrollHandle); }

QString navigationButton(const QString &folder, const QString &icon)
{
    return compose(NavigationButton, folder, {icon}) +
           compose(NavigationName, {}, {color("LabelColor"), color("LinEditColorSecond")});
}

QString batteryBar(const QString &chunkColor) { return compose(BatteryBar, {}, {chunkColor}); }

QString progressBar() { return compose(ProgressBar, {}, {QLatin1String(Groove), color("SliderColor")}); }

QString strip(const QString &objectName)
{
    return compose(Strip, {}, {objectName, QLatin1String(Groove), color("ComboxBackGroundColor")});
}

QString outline(const QString &objectName, const QColor &color, int radius)
{
    return compose(Outline, {}, {objectName, listed(color), QString::number(radius)});
}

QString hairline(const QString &color, int opacity)
{
    return compose(Hairline, {}, {color, QString::number(opacity)});
}

QString switchButton(const QString &folder) { return compose(SwitchButton, folder, {}); }

QString slider()
{
    return compose(Slider, {},
                   {color("SliderColor"), color("LabelColor"), color("ComboxBackGroundColor"),
                    color("LinEditColorSecond"), listed(outlineColor())});
}

QString centredSlider() { return slider() + QLatin1String(UnfilledSlider); }

QString emptySlider() { return compose(EmptySlider, {}, {color("LinEditColorSecond")}); }

QString caption() { return compose(Caption, {}, {color("LabelColor"), QLatin1String(OffInk)}); }

QString readout() { return compose(Readout, {}, {color("LabelColor")}); }

QString quotedText()
{
    return compose(QuotedText, {},
                   {color("LabelColor"), color("ComboxBackGroundColor"), color("SliderColor")});
}

QString instructions() { return compose(Instructions, {}, {color("LabelColor")}); }

QString description() { return compose(Description, {}, {color("LinEditColorSecond")}); }

QString lineEdit()
{
    return compose(LineEdit, {},
                   {color("LinEditColor"), color("ComboxBackGroundColor"), listed(outlineColor())});
}

QString stageButton(const QString &folder, const QString &color, bool selected)
{
    return selected ? compose(StageButton, folder, {QStringLiteral("MaxA.png"), color}) +
                          QLatin1String(StageButtonChosen)
                    : compose(StageButton, folder, {QStringLiteral("MinA.png"), color}) +
                          compose(StageButtonStates, folder, {QStringLiteral("MinA")});
}

QString stageTarget(const QString &folder, const QString &color)
{
    return compose(StageButton, folder, {QStringLiteral("MinATarget.png"), color});
}

QString hoverPicture(const QString &folder, const QString &name)
{
    return compose(HoverPicture, folder, {name});
}

QString colorBar(const QString &folder, const QString &fill, bool selected)
{
    const QString stem = selected ? QStringLiteral("MaxB") : QStringLiteral("MinB");
    return compose(ColorBar, folder, {stem, fill}) + compose(ColorBarStates, folder, {stem});
}

QString tiledPicture(const QString &folder, const QString &name)
{
    return compose(TiledPicture, folder, {name});
}

QString spinBox(const QString &folder)
{
    return compose(SpinBox, folder,
                   {color("LinEditColor"), color("ComboxBackGroundColor"), listed(outlineColor()),
                    QLatin1String(OffInk), QLatin1String(Groove)});
}

QString numberBox()
{
    return compose(NumberBox, {},
                   {color("LinEditColor"), color("ComboxBackGroundColor"), listed(outlineColor())});
}

QString toolkitDialog(const QString &folder)
{
    QString sheet = spinBox(folder) + lineEdit() +
                    compose(ToolkitDialog, folder,
                            {color("ButtonColor"), listed(outlineColor()), color("SliderColor"),
                             QLatin1String(PrimaryPlate), color("ComboxBackGroundColor")});
    for (const auto &[picture, name] : FileButtons)
        sheet += compose(ToolkitButton, folder, {QLatin1String(picture), QLatin1String(name)});
    return sheet + QLatin1String(ScrollHandle);
}

} // namespace style
