// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/FlashView.h"

#include "emulator/panel/PanelLook.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

static constexpr int FieldColumns = 3;
static constexpr int ShownBytes = 4; // of a field

static int widthOf(const QString &text, const QWidget *widget)
{
    return widget->fontMetrics().size(Qt::TextSingleLine, text).width();
}

FlashModel::FlashModel(QObject *parent) : QAbstractTableModel(parent)
{
    fade_.setSingleShot(true);
    fade_.setInterval(ShowChangeMs);
    connect(&fade_, &QTimer::timeout, this, &FlashModel::fade);
}

void FlashModel::show(const QString &mouse, const QByteArray &image)
{
    if (mouse != mouse_ || image.size() != image_.size()) {
        beginResetModel();
        mouse_ = mouse;
        image_ = image;
        changed_ = QVector<bool>(image.size(), false);
        return endResetModel();
    }
    if (image == image_)
        return;
    const QByteArray before = image_;
    image_ = image;
    for (int row = 0; row < rowCount(); ++row) {
        const int first = row * BytesPerRow;
        if (before.mid(first, BytesPerRow) == image_.mid(first, BytesPerRow))
            continue;
        for (int i = first; i < qMin(first + BytesPerRow, image_.size()); ++i)
            changed_[i] = changed_.at(i) || before.at(i) != image_.at(i);
        emitRow(row);
    }
    fade_.start();
}

void FlashModel::emitRow(int row) { emit dataChanged(index(row, 0), index(row, BytesPerRow - 1)); }

void FlashModel::fade()
{
    for (int row = 0; row < rowCount(); ++row) {
        const auto first = changed_.begin() + std::ptrdiff_t(row) * BytesPerRow;
        const auto last = first + qMin(BytesPerRow, image_.size() - row * BytesPerRow);
        if (std::find(first, last, true) == last)
            continue;
        std::fill(first, last, false);
        emitRow(row);
    }
}

int FlashModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : (image_.size() + BytesPerRow - 1) / BytesPerRow;
}

int FlashModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : BytesPerRow; }

static QString nameAt(int address)
{
    const int field = flashFieldAt(address);
    return field < 0 ? QStringLiteral("unused") : flashFields().at(field).name;
}

QVariant FlashModel::data(const QModelIndex &index, int role) const
{
    const int address = index.row() * BytesPerRow + index.column();
    if (!index.isValid() || address >= image_.size())
        return QVariant();
    const QString byte = QStringLiteral("%1").arg(quint8(image_.at(address)), 2, 16, QLatin1Char('0'));
    switch (role) {
    case Qt::DisplayRole:
        return byte;
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1: %2, %3").arg(address, 4, 16, QLatin1Char('0')).arg(byte, nameAt(address));
    case Qt::TextAlignmentRole:
        return int(Qt::AlignCenter);
    case Qt::BackgroundRole:
        return isChanged(address) ? QVariant(QColor(look::Mint)) : QVariant();
    case Qt::ForegroundRole:
        if (isChanged(address))
            return QColor(look::Ground);
        return QColor(flashFieldAt(address) < 0 ? look::Quiet : look::Text);
    default:
        return QVariant();
    }
}

QVariant FlashModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    const bool down = orientation == Qt::Vertical;
    return QStringLiteral("%1").arg(down ? section * BytesPerRow : section, down ? 4 : 2, 16,
                                    QLatin1Char('0'));
}

FieldModel::FieldModel(FlashModel *flash, QObject *parent) : QAbstractTableModel(parent), flash_(flash)
{
    const auto refresh = [this] { emit dataChanged(index(0, 0), index(rowCount() - 1, FieldColumns - 1)); };
    connect(flash, &QAbstractItemModel::dataChanged, this, refresh);
    connect(flash, &QAbstractItemModel::modelReset, this, refresh);
}

int FieldModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : flashFields().size();
}

int FieldModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : FieldColumns; }

QString FieldModel::bytesOf(const FlashField &field) const
{
    QStringList bytes;
    for (int i = field.address; i < field.address + qMin(field.size, ShownBytes); ++i)
        bytes << flash_->index(i / FlashModel::BytesPerRow, i % FlashModel::BytesPerRow).data().toString();
    return bytes.join(QLatin1Char(' ')) + (field.size > ShownBytes ? QStringLiteral(" \u2026") : QString());
}

bool FieldModel::isChanged(const FlashField &field) const
{
    for (int i = field.address; i < field.address + field.size; ++i) {
        if (flash_->isChanged(i))
            return true;
    }
    return false;
}

QVariant FieldModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const FlashField &field = flashFields().at(index.row());
    if (role == Qt::BackgroundRole || role == Qt::ForegroundRole) {
        const QRgb colour = role == Qt::BackgroundRole ? look::Mint : look::Ground;
        return isChanged(field) ? QVariant(QColor(colour)) : QVariant();
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return QVariant();
    switch (index.column()) {
    case 0:
        return field.name;
    case 1:
        return QStringLiteral("%1").arg(field.address, 4, 16, QLatin1Char('0'));
    default:
        return bytesOf(field);
    }
}

QVariant FieldModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString names[FieldColumns] = {QStringLiteral("Field"), QStringLiteral("At"),
                                                QStringLiteral("Bytes")};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? names[section] : QVariant();
}

static void applyStyle(QTableView *table, QAbstractItemModel *model, const QString &name)
{
    table->setModel(model);
    table->setAccessibleName(name);
    table->setShowGrid(false);
    table->setTabKeyNavigation(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setFont(look::fixedFont());
    const int height = QFontMetrics(table->font()).height() + 4;
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(height);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionsClickable(false);
}

FlashView::FlashView(QWidget *parent)
    : QWidget(parent)
    , model_(new FlashModel(this))
    , bytes_(new QTableView(this))
    , fields_(new QTableView(this))
{
    applyStyle(bytes_, model_, QStringLiteral("Bytes of the flash"));
    bytes_->setObjectName(QStringLiteral("flashBytes"));
    showWholeBytes();
    applyStyle(fields_, new FieldModel(model_, this), QStringLiteral("Known fields of the flash"));
    fields_->setObjectName(QStringLiteral("flashFields"));
    fields_->setSelectionBehavior(QAbstractItemView::SelectRows);
    fields_->verticalHeader()->hide();
    const int letter = widthOf(QStringLiteral("0"), fields_);
    fields_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fields_->setColumnWidth(0, 22 * letter);
    fields_->setColumnWidth(1, 6 * letter);
    fields_->horizontalHeader()->setStretchLastSection(true);
    fields_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(fields_, &QTableView::clicked, this, [this](const QModelIndex &at) { chooseField(at.row()); });
    connect(fields_, &QTableView::activated, this, [this](const QModelIndex &at) { chooseField(at.row()); });
    connect(bytes_, &QTableView::clicked, this,
            [this](const QModelIndex &at) { chooseByte(at.row() * FlashModel::BytesPerRow + at.column()); });
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(bytes_);
    layout->addWidget(fields_, 1);
}

// A byte with a missing digit is invalid: the table has fixed columns.
void FlashView::showWholeBytes()
{
    const int width = widthOf(QStringLiteral("00"), bytes_) + 8;
    QHeaderView *columns = bytes_->horizontalHeader();
    columns->setMinimumSectionSize(0);
    columns->setDefaultSectionSize(width);
    columns->setSectionResizeMode(QHeaderView::Fixed);
    columns->setFont(bytes_->font());
    bytes_->verticalHeader()->setFont(bytes_->font());
    bytes_->verticalHeader()->setFixedWidth(3 * width);
    bytes_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    bytes_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int bar = bytes_->verticalScrollBar()->sizeHint().width();
    bytes_->setFixedWidth((FlashModel::BytesPerRow + 3) * width + bar + 2 * bytes_->frameWidth());
}

void FlashView::chooseField(int row)
{
    const FlashField &field = flashFields().at(row);
    bytes_->clearSelection();
    for (int i = field.address; i < field.address + field.size; ++i)
        bytes_->selectionModel()->select(
            model_->index(i / FlashModel::BytesPerRow, i % FlashModel::BytesPerRow),
            QItemSelectionModel::Select);
    bytes_->scrollTo(model_->index(field.address / FlashModel::BytesPerRow, 0));
}

void FlashView::chooseByte(int address)
{
    const int row = flashFieldAt(address);
    if (row < 0)
        return fields_->clearSelection();
    fields_->selectRow(row);
}
