// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/ReportList.h"

#include "emulator/panel/PanelLook.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

static constexpr int FlushMs = 50;

ReportModel::ReportModel(QObject *parent) : QAbstractListModel(parent)
{
    flush_.setSingleShot(true);
    flush_.setInterval(FlushMs);
    connect(&flush_, &QTimer::timeout, this, &ReportModel::flush);
}

void ReportModel::append(const QByteArray &line)
{
    waiting_.append(QString::fromLatin1(line).simplified());
    if (waiting_.size() > Limit)
        waiting_.removeFirst();
    if (!flush_.isActive())
        flush_.start();
}

void ReportModel::flush()
{
    const int over = qMin(lines_.size(), lines_.size() + waiting_.size() - Limit);
    if (over > 0) {
        beginRemoveRows(QModelIndex(), 0, over - 1);
        lines_.erase(lines_.begin(), lines_.begin() + over);
        endRemoveRows();
    }
    if (waiting_.isEmpty())
        return;
    beginInsertRows(QModelIndex(), lines_.size(), lines_.size() + waiting_.size() - 1);
    lines_ += waiting_;
    waiting_.clear();
    endInsertRows();
}

void ReportModel::clear()
{
    beginResetModel();
    lines_.clear();
    waiting_.clear();
    endResetModel();
}

int ReportModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : lines_.size(); }

QVariant ReportModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= lines_.size())
        return QVariant();
    const QString &line = lines_.at(index.row());
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return line;
    if (role != Qt::ForegroundRole)
        return QVariant();
    const bool isLoss = line.startsWith(QLatin1String("-- "));
    return QColor(isLoss ? look::Warning : line.contains(QLatin1String(" <- ")) ? look::Accent : look::Text);
}

ReportList::ReportList(QWidget *parent)
    : QWidget(parent)
    , model_(new ReportModel(this))
    , list_(new QListView(this))
    , pause_(new QPushButton(QStringLiteral("Pause"), this))
    , clear_(new QPushButton(QStringLiteral("Clear"), this))
    , count_(new QLabel(this))
{
    list_->setObjectName(QStringLiteral("reportList"));
    list_->setAccessibleName(QStringLiteral("Reports that have passed"));
    list_->setModel(model_);
    list_->setUniformItemSizes(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setTextElideMode(Qt::ElideNone);
    list_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setFont(look::fixedFont());
    pause_->setObjectName(QStringLiteral("pauseButton"));
    pause_->setAccessibleName(QStringLiteral("Pause the reports"));
    pause_->setCheckable(true);
    clear_->setObjectName(QStringLiteral("clearButton"));
    clear_->setAccessibleName(QStringLiteral("Clear the reports"));
    count_->setObjectName(QStringLiteral("quiet"));
    auto *row = new QHBoxLayout;
    row->addWidget(pause_);
    row->addWidget(clear_);
    row->addStretch();
    row->addWidget(count_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(list_);

    setTabOrder(pause_, clear_);
    setTabOrder(clear_, list_);
    connect(pause_, &QPushButton::toggled, this, &ReportList::setPaused);
    connect(clear_, &QPushButton::clicked, model_, &ReportModel::clear);
    // Keeps the position of a user who has scrolled up.
    connect(model_, &ReportModel::rowsAboutToBeInserted, this, [this] {
        const QScrollBar *bar = list_->verticalScrollBar();
        atEnd_ = bar->value() >= bar->maximum() - 1;
    });
    connect(model_, &ReportModel::rowsInserted, this, [this] {
        if (atEnd_)
            list_->scrollToBottom();
        showCount();
    });
    connect(model_, &ReportModel::modelReset, this, &ReportList::showCount);
    showCount();
}

void ReportList::append(const QByteArray &line)
{
    if (!pause_->isChecked())
        return model_->append(line);
    ++passed_;
    showCount();
}

void ReportList::setPaused(bool paused)
{
    passed_ = 0;
    pause_->setText(paused ? QStringLiteral("Go on") : QStringLiteral("Pause"));
    showCount();
}

void ReportList::showCount()
{
    if (pause_->isChecked())
        count_->setText(QStringLiteral("Paused; %1 have passed since").arg(passed_));
    else
        count_->setText(QStringLiteral("%1 reports, the last %2 are kept")
                            .arg(model_->rowCount())
                            .arg(ReportModel::Limit));
}
