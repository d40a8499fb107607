// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/SettingHelp.h"

#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <algorithm>

namespace
{

constexpr QRect MarkPlace{52, 24, 4, 16};
constexpr QRect TitlePlace{64, 20, 723, 24};
constexpr QRect TextPlace{64, 50, 723, 96};

} // namespace

SettingHelp::SettingHelp(QWidget *parent)
    : QFrame(parent), mark_(new QLabel(this)), title_(new QLabel(this)), text_(new QLabel(this))
{
    mark_->setObjectName(QStringLiteral("helpMark"));
    mark_->setGeometry(MarkPlace);
    title_->setObjectName(QStringLiteral("helpTitle"));
    title_->setGeometry(TitlePlace);
    text_->setObjectName(QStringLiteral("helpText"));
    text_->setGeometry(TextPlace);
    text_->setWordWrap(true);
    text_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    onFirstShow(this, [this] { applyStyle(); });
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget *, const QWidget *now) { followFocus(now); });
}

void SettingHelp::applyStyle()
{
    const QString pictures = style::pictureFolder(QStringLiteral("Sensor"));
    setStyleSheet(style::areaPicture(pictures, objectName(), QStringLiteral("HelpCard.png")));
    mark_->setStyleSheet(style::sectionTitle(pictures, mark_->objectName()));
    title_->setStyleSheet(style::heading());
    text_->setStyleSheet(style::label(style::color("LinEditColorSecond")));
}

void SettingHelp::setEntries(const QVector<Entry> &entries, const Entry &hint)
{
    entries_ = entries;
    hint_ = hint;
    for (const Entry &entry : qAsConst(entries_))
        for (QWidget *area : entry.areas)
            area->installEventFilter(this);
    showEntry(shown_);
}

int SettingHelp::entryOf(const QWidget *widget) const
{
    const auto holds = [widget](const QWidget *area) { return area == widget || area->isAncestorOf(widget); };
    for (int i = 0; widget && i < entries_.size(); ++i)
        if (std::any_of(entries_[i].areas.begin(), entries_[i].areas.end(), holds))
            return i;
    return -1;
}

bool SettingHelp::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter) {
        pointed_ = entryOf(qobject_cast<QWidget *>(watched));
        showEntry(pointed_);
    } else if (event->type() == QEvent::Leave) {
        pointed_ = -1;
        showEntry(focused_);
    }
    return QFrame::eventFilter(watched, event);
}

// The list of a box and a notice take the focus away for a while; the setting stays the same.
void SettingHelp::followFocus(const QWidget *focus)
{
    if (!focus || focus->window() != window())
        return;
    focused_ = entryOf(focus);
    if (focused_ >= 0 || pointed_ < 0)
        showEntry(focused_);
}

void SettingHelp::showEntry(int index)
{
    shown_ = index;
    const Entry &entry = index < 0 ? hint_ : entries_[index];
    title_->setText(entry.title);
    text_->setText(entry.text);
}
