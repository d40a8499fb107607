// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulated devices as cards in a list: a model whose rows stay while the devices are the same, and
// the drawing of a card.
#pragma once

#include "emulator/panel/PanelState.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

class DeviceModel : public QAbstractListModel
{
    Q_OBJECT

public:
    static constexpr int DeviceRole = Qt::UserRole;

    using QAbstractListModel::QAbstractListModel;

    void show(const QVector<PanelDevice> &devices);
    int rowOf(const QString &id) const;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QVector<PanelDevice> devices_;
};

class DeviceCard : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
