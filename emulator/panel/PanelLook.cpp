// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/PanelLook.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

static constexpr struct {
    const char *name; // "%name%" in the sheet
    QRgb colour;
} Colours[] = {
    {"ground", look::Ground},
    {"groundLow", look::GroundLow},
    {"surface", look::Surface},
    {"card", look::Card},
    {"control", look::Control},
    {"raised", look::Raised},
    {"line", look::Line},
    {"edge", look::Edge},
    {"text", look::Text},
    {"quiet", look::Quiet},
    {"faint", look::Faint},
    {"off", look::Off},
    {"accent", look::Accent},
    {"accentDark", look::AccentDark},
    {"accentGround", look::AccentGround},
    {"warning", look::Warning},
};

static QPalette panelPalette()
{
    static constexpr struct {
        QPalette::ColorRole role;
        QRgb colour;
    } Rows[] = {
        {QPalette::Window, look::Ground},
        {QPalette::WindowText, look::Text},
        {QPalette::Base, look::GroundLow},
        {QPalette::AlternateBase, look::Surface},
        {QPalette::Text, look::Text},
        {QPalette::Button, look::Control},
        {QPalette::ButtonText, look::Text},
        {QPalette::Highlight, look::AccentDark},
        {QPalette::HighlightedText, look::Text},
        {QPalette::ToolTipBase, look::Card},
        {QPalette::ToolTipText, look::Text},
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0) // before, the toolkit derives this colour from that of the text
        {QPalette::PlaceholderText, look::Quiet},
#endif
    };
    QPalette palette;
    for (const auto &row : Rows)
        palette.setColor(row.role, QColor(row.colour));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(look::Faint));
    return palette;
}

// The toolkit takes the picture of double size for a background-image, but not for an image.
static constexpr const char *Sheet = R"(
QGroupBox { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 %card%, stop:1 %surface%);
            border: 1px solid %line%; border-radius: 12px; margin: 0; padding: 8px; }
QLabel#heading { font-weight: bold; }
QLabel#quiet { color: %quiet%; }
QLabel#stateLabel { border: 1px solid %warning%; color: %warning%; border-radius: 10px; padding: 2px 10px; }
QLabel#stateLabel[running="true"] { border-color: %accent%; color: %accent%; }
QLabel#messageLabel { color: %warning%; }
QPushButton { background: %control%; border: 1px solid %edge%; border-radius: 8px; padding: 5px 12px; }
QPushButton:hover { background: %raised%; border-color: %faint%; }
QPushButton:pressed { background: %groundLow%; border-color: %accent%; }
QPushButton:checked { background: %accentGround%; border-color: %accent%; color: %accent%; }
QPushButton:disabled { color: %faint%; background: %surface%; border-color: %line%; }
QPushButton:focus { border: 2px solid %accent%; padding: 4px 11px; }
QCheckBox { border: 1px solid transparent; border-radius: 4px; padding: 2px; spacing: 6px; }
QCheckBox:focus { border-color: %accent%; }
QCheckBox::indicator { width: 18px; height: 18px; background-repeat: no-repeat; }
QCheckBox::indicator:unchecked { background-image: url("%pictures%/Panel/CheckBox.png"); }
QCheckBox::indicator:unchecked:hover { background-image: url("%pictures%/Panel/CheckBoxHover.png"); }
QCheckBox::indicator:unchecked:disabled { background-image: url("%pictures%/Panel/CheckBoxOff.png"); }
QCheckBox::indicator:checked { background-image: url("%pictures%/Panel/CheckBoxCheck.png"); }
QCheckBox::indicator:checked:hover { background-image: url("%pictures%/Panel/CheckBoxCheckHover.png"); }
QCheckBox::indicator:checked:disabled { background-image: url("%pictures%/Panel/CheckBoxCheckOff.png"); }
QSlider { border: 1px solid transparent; border-radius: 4px; }
QSlider:focus { border-color: %accent%; }
QSlider::groove:horizontal { height: 4px; background: %edge%; border-radius: 2px; }
QSlider::sub-page:horizontal { background: %accent%; border-radius: 2px; }
QSlider::sub-page:horizontal:disabled { background: %line%; }
QSlider::handle:horizontal { width: 14px; margin: -7px 0; border: 2px solid %groundLow%; border-radius: 9px;
                             background: %accent%; }
QSlider::handle:horizontal:hover { border-color: %text%; }
QSlider::handle:horizontal:disabled { background: %off%; }
QComboBox, QSpinBox { background: %card%; border: 1px solid %edge%; border-radius: 6px; padding: 3px 8px;
                      selection-background-color: %accentDark%; selection-color: %text%; }
QComboBox { padding-right: 2px; combobox-popup: 0; }
QComboBox:hover, QSpinBox:hover { border-color: %quiet%; }
QComboBox:focus, QSpinBox:focus { border: 2px solid %accent%; padding: 2px 7px; }
QComboBox:focus { padding-right: 1px; }
QComboBox:disabled, QSpinBox:disabled { color: %faint%; background: %surface%; border-color: %line%; }
QComboBox::drop-down { border: none; width: 22px; }
QComboBox::down-arrow { width: 16px; height: 16px; background-repeat: no-repeat;
                        background-image: url("%pictures%/Panel/Menu.png"); }
QComboBox::down-arrow:on { background-image: url("%pictures%/Panel/MenuClicked.png"); }
QComboBox::down-arrow:disabled { background-image: url("%pictures%/Panel/MenuOff.png"); }
QAbstractItemView { background: %groundLow%; border: 1px solid %line%; border-radius: 8px; outline: 0; }
QAbstractItemView:focus { border-color: %accent%; }
QComboBox QAbstractItemView { background: %surface%; border: 1px solid %edge%; border-radius: 0; }
QComboBox QAbstractItemView:focus { border-color: %edge%; }
QListView#deviceList { background: transparent; border: none; }
QHeaderView { background: transparent; border: none; }
QHeaderView::section { background: transparent; color: %quiet%; border: none; padding: 2px 4px; }
QTableView#flashBytes QHeaderView::section:horizontal { padding: 2px 0; }
QTableCornerButton::section { background: transparent; border: none; }
QScrollBar { background: transparent; border: none; margin: 0; }
QScrollBar:vertical { width: 10px; }
QScrollBar:horizontal { height: 10px; }
QScrollBar::handle { background: %edge%; border-radius: 3px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 30px; }
QScrollBar::handle:horizontal { min-width: 30px; }
QScrollBar::handle:hover { background: %faint%; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QToolTip { background: %card%; color: %text%; border: 1px solid %edge%; padding: 6px; }
QTabWidget::pane { border: none; top: 6px; }
QTabBar { qproperty-drawBase: 0; }
QTabBar::tab { background: transparent; color: %quiet%; padding: 6px 14px; border: 1px solid transparent;
               border-bottom: 2px solid transparent; }
QTabBar::tab:hover { color: %text%; }
QTabBar::tab:selected { color: %text%; border-bottom-color: %accent%; }
QTabBar::tab:focus { border: 1px solid %accent%; border-radius: 4px; }
)";

static QString panelSheet(const QString &pictures)
{
    QString sheet = QLatin1String(Sheet);
    for (const auto &row : Colours)
        sheet.replace(QStringLiteral("%%1%").arg(QLatin1String(row.name)), QColor(row.colour).name());
    return sheet.replace(QLatin1String("%pictures%"), pictures);
}

QFont look::fixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(font.pointSizeF() > 9 ? font.pointSizeF() - 1 : 8);
    return font;
}

void look::apply(QApplication &application, const QString &pictures)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(panelPalette());
    application.setStyleSheet(panelSheet(pictures));
}
