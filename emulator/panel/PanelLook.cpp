// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/PanelLook.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

static QPalette panelPalette()
{
    static constexpr struct {
        QPalette::ColorRole role;
        QRgb colour;
    } Rows[] = {
        {QPalette::Window, look::Ground},
        {QPalette::WindowText, look::Text},
        {QPalette::Base, look::Surface},
        {QPalette::AlternateBase, look::Raised},
        {QPalette::Text, look::Text},
        {QPalette::Button, look::Raised},
        {QPalette::ButtonText, look::Text},
        {QPalette::Highlight, look::MintGround},
        {QPalette::HighlightedText, look::Text},
        {QPalette::ToolTipBase, look::Raised},
        {QPalette::ToolTipText, look::Text},
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0) // before, the toolkit derives this colour from that of the text
        {QPalette::PlaceholderText, look::Quiet},
#endif
    };
    QPalette palette;
    for (const auto &row : Rows)
        palette.setColor(row.role, QColor(row.colour));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0xff6b747e));
    return palette;
}

static constexpr const char *Sheet = R"(
QGroupBox { background: #1d2126; border: 1px solid #2b3138; border-radius: 8px; margin: 0; padding: 8px; }
QLabel#heading { font-weight: bold; }
QLabel#quiet { color: #9aa4af; }
QLabel#stateLabel { border: 1px solid #ffb454; color: #ffb454; border-radius: 10px; padding: 2px 10px; }
QLabel#stateLabel[running="true"] { border-color: #00ff99; color: #00ff99; }
QLabel#messageLabel { color: #ffb454; }
QPushButton { background: #272c33; border: 1px solid #3a414a; border-radius: 5px; padding: 5px 12px; }
QPushButton:hover { background: #313840; }
QPushButton:pressed, QPushButton:checked { background: #123a2b; border-color: #00b86e; }
QPushButton:disabled { color: #6b747e; background: #1d2126; border-color: #2b3138; }
QPushButton:focus { border: 2px solid #00ff99; padding: 4px 11px; }
QCheckBox { border: 1px solid transparent; border-radius: 4px; padding: 3px; spacing: 6px; }
QCheckBox:focus { border-color: #00ff99; }
QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid #6b747e; border-radius: 3px; background: #15181c; }
QCheckBox::indicator:checked { background: #00ff99; border-color: #00ff99; }
QCheckBox::indicator:disabled { border-color: #3a414a; }
QCheckBox::indicator:checked:disabled { background: #4a6257; border-color: #4a6257; }
QSlider { border: 1px solid transparent; border-radius: 4px; }
QSlider:focus { border-color: #00ff99; }
QSlider::groove:horizontal { height: 4px; background: #3a414a; border-radius: 2px; }
QSlider::sub-page:horizontal { background: #00ff99; border-radius: 2px; }
QSlider::sub-page:horizontal:disabled { background: #3a414a; }
QSlider::handle:horizontal { width: 14px; margin: -5px 0; border-radius: 7px; background: #e8ebee; }
QSlider::handle:horizontal:disabled { background: #6b747e; }
QComboBox, QSpinBox { selection-background-color: #0f6b47; }
QComboBox:focus, QSpinBox:focus { border: 2px solid #00ff99; border-radius: 4px; background: #272c33; }
QAbstractItemView { background: #1d2126; border: 1px solid #2b3138; border-radius: 6px; }
QAbstractItemView:focus { border-color: #00ff99; }
QListView#deviceList { background: transparent; border: none; }
QHeaderView::section { background: #1d2126; color: #9aa4af; border: none; padding: 2px 4px; }
QTableView#flashBytes QHeaderView::section:horizontal { padding: 2px 0; }
QTableCornerButton::section { background: #1d2126; border: none; }
QTabWidget::pane { border: none; top: 6px; }
QTabBar { qproperty-drawBase: 0; }
QTabBar::tab { background: transparent; color: #9aa4af; padding: 6px 14px; border: 1px solid transparent;
               border-bottom: 2px solid transparent; }
QTabBar::tab:selected { color: #e8ebee; border-bottom-color: #00ff99; }
QTabBar::tab:focus { border: 1px solid #00ff99; border-radius: 4px; }
)";

QFont look::fixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(font.pointSizeF() > 9 ? font.pointSizeF() - 1 : 8);
    return font;
}

void look::apply(QApplication &application)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(panelPalette());
    application.setStyleSheet(QLatin1String(Sheet));
}
