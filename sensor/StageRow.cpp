// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/StageRow.h"

#include "device/DeviceState.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QAbstractButton>
#include <QColor>

namespace
{

struct Growth {
    int x, y;
    QSize size;
};
constexpr Growth ButtonGrowth = {-7, -7, {68, 70}};
constexpr Growth BarGrowth = {-8, 6, {66, 14}};

void place(QWidget *widget, const QRect &plain, const Growth &growth, bool selected)
{
    widget->setGeometry(selected ? QRect(plain.topLeft() + QPoint(growth.x, growth.y), growth.size) : plain);
}

void setSheet(QWidget *widget, const QString &sheet)
{
    if (widget->styleSheet() != sheet)
        widget->setStyleSheet(sheet);
}

int checkedOf(const StageRow::Widgets &widgets)
{
    for (std::size_t i = 0; i < widgets.size(); ++i)
        if (widgets[i]->isChecked())
            return int(i);
    return -1;
}

} // namespace

QString listedColor(const QColor &color)
{
    return QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
}

StageRow::StageRow(const Widgets &stageButtons, const Widgets &colorBars)
    : buttons_(stageButtons)
    , bars_(colorBars)
    , StageColor_{QStringLiteral("255,0,0"),   QStringLiteral("0,255,0"),   QStringLiteral("0,0,255"),
                  QStringLiteral("255,255,0"), QStringLiteral("0,255,255"), QStringLiteral("255,0,255")}
{
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        BigRect_[i] = buttons_[i]->geometry();
        BarRect_[i] = bars_[i]->geometry();
    }
}

void StageRow::applyStyle()
{
    folder_ = style::pictureFolder(QStringLiteral("Sensor"));
    ink_ = style::color("ButtonColor");
    for (int stage = 0; stage < DpiStageLimit; ++stage) {
        styleButton(stage);
        styleBar(stage);
    }
}

void StageRow::styleButton(int stage)
{
    const auto i = std::size_t(stage);
    place(buttons_[i], BigRect_[i], ButtonGrowth, buttonSelected_[i]);
    if (!folder_.isEmpty())
        setSheet(buttons_[i], stage == target_ && !buttonSelected_[i]
                                  ? style::stageTarget(folder_, ink_)
                                  : style::stageButton(folder_, ink_, buttonSelected_[i]));
}

void StageRow::setTarget(int stage)
{
    if (stage == target_)
        return;
    const int before = target_;
    target_ = stage;
    for (const int changed : {before, target_})
        if (changed != NoTarget)
            styleButton(changed);
}

void StageRow::styleBar(int stage)
{
    const auto i = std::size_t(stage);
    place(bars_[i], BarRect_[i], BarGrowth, barSelected_[i]);
    if (!folder_.isEmpty())
        setSheet(bars_[i], style::colorBar(folder_, StageColor_[i], barSelected_[i]));
}

void StageRow::setText(int stage, const QString &text)
{
    button(stage)->setText(text);
    const QString form = language::text(language::Section::sensor, "StageDPI", LanguageIndex);
    button(stage)->setAccessibleDescription(form.isEmpty() ? text : form.arg(text));
}

QString StageRow::text(int stage) const { return button(stage)->text(); }

void StageRow::setColor(int stage, const QString &color)
{
    StageColor_[std::size_t(stage)] = color;
    bar(stage)->setAccessibleDescription(color);
    styleBar(stage);
}

void StageRow::swap(int one, int other)
{
    const QString oneText = text(one);
    const QString oneColor = color(one);
    setText(one, text(other));
    setColor(one, color(other));
    setText(other, oneText);
    setColor(other, oneColor);
}

void StageRow::selectButton(int stage, bool selected)
{
    buttonSelected_[std::size_t(stage)] = selected;
    styleButton(stage);
}

void StageRow::selectBar(int stage, bool selected)
{
    barSelected_[std::size_t(stage)] = selected;
    styleBar(stage);
}

void StageRow::selectOnly(int stage)
{
    for (int i = 0; i < DpiStageLimit; ++i) {
        selectButton(i, i == stage);
        selectBar(i, i == stage);
    }
}

void StageRow::show(int lastStage)
{
    for (int i = 0; i < DpiStageLimit; ++i) {
        button(i)->setVisible(i <= lastStage);
        bar(i)->setVisible(i <= lastStage);
    }
}

void StageRow::stopTabAt(int stage)
{
    for (int i = 0; i < DpiStageLimit; ++i) {
        const Qt::FocusPolicy policy = i == stage ? Qt::StrongFocus : Qt::ClickFocus;
        button(i)->setFocusPolicy(policy);
        bar(i)->setFocusPolicy(policy);
    }
}

int StageRow::checkedButton() const { return checkedOf(buttons_); }

int StageRow::checkedBar() const { return checkedOf(bars_); }

std::vector<QSignalBlocker> StageRow::silence() const
{
    std::vector<QSignalBlocker> blockers;
    blockers.reserve(buttons_.size() + bars_.size());
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        blockers.emplace_back(buttons_[i]);
        blockers.emplace_back(bars_[i]);
    }
    return blockers;
}
