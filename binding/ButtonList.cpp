// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ButtonList.h"

#include "binding/ActionButton.h"
#include "device/DeviceState.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

namespace
{

constexpr QSize CaptionSize{344, 40};
constexpr int BadgeSize = 26;
constexpr int RowGap = 8;

} // namespace

ButtonList::ButtonList(QScrollArea *scrollArea, QWidget *picture)
    : QObject(picture), area_(scrollArea), group_(new QButtonGroup(this))
{
    group_->setObjectName(QStringLiteral("ButtonGroup"));
    auto *list = new QWidget;
    auto *grid = new QGridLayout(list);
    grid->setContentsMargins(0, 0, 0, RowGap);
    grid->setSpacing(RowGap);
    grid->setColumnStretch(2, 1);
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        addRow(row, list, picture);
        grid->addWidget(rows_[row].number, int(row), 0);
        grid->addWidget(rows_[row].caption, int(row), 1);
    }
    area_->setWidget(list);
    list->setAutoFillBackground(false);
    setModel(0);
}

void ButtonList::addRow(std::size_t row, QWidget *list, QWidget *picture)
{
    const ButtonRow &names = ButtonRows[row];
    const QString number = QString::number(row + 1);
    rows_[row].number = new QLabel(number, list);
    rows_[row].number->setFixedSize(BadgeSize, BadgeSize);
    rows_[row].number->setAlignment(Qt::AlignCenter);
    auto *caption = new ActionButton(QLatin1String(names.caption), list);
    caption->setFixedSize(CaptionSize);
    group_->addButton(caption, int(row));
    caption->installEventFilter(this);
    rows_[row].caption = caption;
    auto *marker = new QToolButton(picture);
    marker->setObjectName(QLatin1String(names.marker));
    marker->setText(number);
    marker->setCheckable(true);
    marker->resize(BadgeSize, BadgeSize);
    rows_[row].marker = marker;
    setText(names.button, QString());
    connect(caption, &QToolButton::toggled, this, [this, marker](bool checked) {
        marker->setChecked(checked);
        emit checkedChanged();
    });
    // A click would toggle the marker; only its row decides whether it is checked.
    connect(marker, &QToolButton::clicked, this,
            [marker, caption] { marker->setChecked(caption->isChecked()); });
}

// Scrolls to the row that gets the keyboard focus.
bool ButtonList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        area_->ensureWidgetVisible(qobject_cast<QWidget *>(watched), 0, RowGap);
    return false;
}

void ButtonList::applyStyle(const QString &folder)
{
    const QString ink = style::color("ButtonColor");
    const QString row = style::stateButton(folder, QStringLiteral("Row"), ink, ink);
    const QString mark =
        style::stateButton(folder, QStringLiteral("Mark"), ink, style::color("ComboxBackGroundColor"));
    const QString badge = style::labelPlate(folder, style::color("LabelColor"), QStringLiteral("Badge.png"));
    for (const Row &each : rows_) {
        each.caption->setStyleSheet(row);
        each.marker->setStyleSheet(mark);
        each.number->setStyleSheet(badge);
    }
}

std::optional<std::size_t> ButtonList::rowOf(int button)
{
    for (std::size_t row = 0; row < ButtonRows.size(); ++row)
        if (ButtonRows[row].button == button)
            return row;
    return std::nullopt;
}

void ButtonList::setText(int button, const QString &text)
{
    const std::optional<std::size_t> index = rowOf(button);
    if (!index)
        return;
    const Row &row = rows_[*index];
    row.caption->setText(text);
    row.caption->setToolTip(row.caption->isElided() ? text : QString());
    const QString form = language::text(language::Section::common, "ButtonName", LanguageIndex);
    const QString name =
        (form.isEmpty() ? QStringLiteral("Button %1: %2") : form).arg(row.number->text(), text);
    row.caption->setAccessibleName(name);
    row.marker->setAccessibleName(name);
    row.marker->setToolTip(text);
}

int ButtonList::checkedRow() const { return group_->checkedId(); }

void ButtonList::check(std::size_t row) { rows_[row].caption->setChecked(true); }

// An exclusive group does not uncheck its last button.
void ButtonList::uncheckAll()
{
    group_->setExclusive(false);
    for (const Row &row : rows_)
        row.caption->setChecked(false);
    group_->setExclusive(true);
}

void ButtonList::scrollTo(std::size_t row) { area_->verticalScrollBar()->setValue(ButtonRows[row].scroll); }

void ButtonList::setModel(int model)
{
    if (model < 0 || model >= ModelCount)
        return;
    const MarkerPlaces &places = PlacesByModel[std::size_t(model)];
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (places[row] != Unmoved)
            rows_[row].marker->move(places[row]);
    hasSixth_ = model == 0;
    showRows();
}

void ButtonList::setButtonCount(int count)
{
    buttonCount_ = count;
    showRows();
}

// Hides rows of buttons that this mouse does not have: their captions are stale and must not be counted.
bool ButtonList::isShown(std::size_t row) const
{
    return (hasSixth_ || row != SixthRow) && (buttonCount_ <= 0 || ButtonRows[row].button < buttonCount_);
}

void ButtonList::showRows()
{
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const bool shown = isShown(row);
        rows_[row].number->setVisible(shown);
        rows_[row].caption->setVisible(shown);
        rows_[row].marker->setVisible(shown);
    }
    area_->widget()->adjustSize();
}

int ButtonList::countOf(const QString &text) const
{
    int count = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (isShown(row) && rows_[row].caption->text() == text)
            ++count;
    return count;
}
