// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ButtonList.h"

#include "binding/ActionButton.h"
#include "device/DeviceState.h"
#include "presentation/FirstShow.h"
#include "presentation/FocusRing.h"
#include "presentation/ScrollFades.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QButtonGroup>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace
{

constexpr QSize CaptionSize{346, 36};
constexpr int BadgeSize = 26;
constexpr int RowGap = 8;
constexpr int TailRoom =
    52; // below a list that scrolls: each row's position of the scroll bar can be reached

} // namespace

ButtonList::ButtonList(QScrollArea *scrollArea, QWidget *picture)
    : QObject(picture), area_(scrollArea), group_(new QButtonGroup(this))
{
    group_->setObjectName(QStringLiteral("ButtonGroup"));
    auto *list = new QWidget;
    grid_ = new QGridLayout(list);
    grid_->setSpacing(RowGap);
    grid_->setColumnStretch(2, 1);
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        addRow(row, list, picture);
        grid_->addWidget(rows_[row].number, int(row), 0);
        grid_->addWidget(rows_[row].caption, int(row), 1);
    }
    area_->setWidget(list);
    list->setAutoFillBackground(false);
    fades_ = new ScrollFades(area_, QStringLiteral("Buttoninterface"), [this](int y) { return cutsRow(y); });
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
    rows_[row].caption = caption;
    auto *marker = new PairedButton(picture);
    marker->setObjectName(QLatin1String(names.marker));
    marker->setText(number);
    marker->setCheckable(true);
    marker->setProperty("accessibleRole", QStringLiteral("choice"));
    marker->resize(BadgeSize, BadgeSize);
    rows_[row].marker = marker;
    setText(names.button, QString());
    pair(rows_[row]);
    connect(caption, &QToolButton::toggled, this, [this, row](bool checked) {
        rows_[row].marker->setChecked(checked);
        for (QWidget *each : std::initializer_list<QWidget *>{rows_[row].number, rows_[row].marker}) {
            QFont font = each->font();
            font.setBold(checked);
            each->setFont(font);
        }
        emit checkedChanged();
    });
    // A click would toggle the marker; only its row decides whether it is checked.
    connect(marker, &QToolButton::clicked, this,
            [marker, caption] { marker->setChecked(caption->isChecked()); });
}

void ButtonList::pair(const Row &row)
{
    for (QWidget *each : std::initializer_list<QWidget *>{row.number, row.caption, row.marker})
        each->installEventFilter(this);
}

// Scrolls to the row that gets the focus, and lights both buttons of the pair that is pointed at.
bool ButtonList::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool enters = type == QEvent::Enter || isKeyboardFocus(event);
    const bool leaves = type == QEvent::Leave || type == QEvent::FocusOut;
    if (type == QEvent::FocusIn && qobject_cast<ActionButton *>(watched))
        area_->ensureWidgetVisible(static_cast<QWidget *>(watched), 0, RowGap);
    if (!enters && !leaves)
        return false;
    for (const Row &row : rows_) {
        if (watched != row.number && watched != row.caption && watched != row.marker)
            continue;
        row.caption->setLit(enters);
        row.marker->setLit(enters);
    }
    return false;
}

bool ButtonList::cutsRow(int y) const
{
    return std::any_of(rows_.begin(), rows_.end(), [y](const Row &row) {
        return !row.caption->isHidden() && row.caption->y() < y && y <= row.caption->geometry().bottom();
    });
}

void ButtonList::applyStyle(const QString &folder)
{
    const QString ink = style::color("ButtonColor");
    const QString row = style::stateButton(folder, QStringLiteral("Row"), ink, ink);
    const QString mark =
        style::stateButton(folder, QStringLiteral("Mark"), ink, style::color("ComboxBackGroundColor"));
    const QString badge = style::labelPlate(folder, style::color("LabelColor"), QStringLiteral("Badge.png"));
    for (const Row &each : rows_) {
        setStyleSheetWhenShown(each.caption, row);
        setStyleSheetWhenShown(each.marker, mark);
        setStyleSheetWhenShown(each.number, badge);
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
    row.caption->setShortcut({}); // an "&" is part of a macro's name
    row.caption->setToolTip(row.caption->isElided() ? text : QString());
    const QString form = language::text(language::Section::common, "ButtonName", LanguageIndex);
    const QString name =
        (form.isEmpty() ? QStringLiteral("Button %1: %2") : form).arg(row.number->text(), text);
    row.caption->setAccessibleName(name);
    row.marker->setAccessibleName(name);
    row.marker->setToolTip(text);
}

void ButtonList::renewNames()
{
    for (std::size_t row = 0; row < rows_.size(); ++row)
        setText(ButtonRows[row].button, rows_[row].caption->text());
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

void ButtonList::scrollToTop() { area_->verticalScrollBar()->setValue(0); }

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
    int shownRows = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const bool shown = isShown(row);
        shownRows += shown;
        rows_[row].number->setVisible(shown);
        rows_[row].caption->setVisible(shown);
        rows_[row].marker->setVisible(shown);
    }
    const int height = shownRows * (CaptionSize.height() + RowGap) - RowGap;
    grid_->setContentsMargins(0, 0, 0, height > area_->height() ? TailRoom : 0);
    area_->widget()->adjustSize();
    fades_->update();
}

int ButtonList::countOf(const QString &text) const
{
    int count = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (isShown(row) && rows_[row].caption->text() == text)
            ++count;
    return count;
}
