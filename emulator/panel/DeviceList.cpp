// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/DeviceList.h"

#include "emulator/panel/PanelLook.h"

#include <QPainter>
#include <algorithm>

static constexpr int Margin = 12;
static constexpr int Gap = 6; // between cards
static constexpr int Radius = 8;

void DeviceModel::show(const QVector<PanelDevice> &devices)
{
    const bool sameRows = std::equal(devices.begin(), devices.end(), devices_.begin(), devices_.end(),
                                     [](const auto &a, const auto &b) { return a.id == b.id; });
    if (!sameRows) {
        beginResetModel();
        devices_ = devices;
        return endResetModel();
    }
    for (int row = 0; row < devices.size(); ++row) {
        if (devices_.at(row) == devices.at(row))
            continue;
        devices_[row] = devices.at(row);
        emit dataChanged(index(row), index(row));
    }
}

int DeviceModel::rowOf(const QString &id) const
{
    const auto found = std::find_if(devices_.begin(), devices_.end(),
                                    [&id](const PanelDevice &device) { return device.id == id; });
    return found == devices_.end() ? -1 : int(found - devices_.begin());
}

int DeviceModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : devices_.size(); }

QVariant DeviceModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= devices_.size())
        return QVariant();
    const PanelDevice &device = devices_.at(index.row());
    if (role == DeviceRole)
        return QVariant::fromValue(device);
    if (role == Qt::DisplayRole)
        return device.id;
    QString battery;
    if (device.isMouse)
        battery = QStringLiteral(". Battery %1 %").arg(device.battery);
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole)
        return QStringLiteral("%1, %2. %3%4. %5")
            .arg(device.id, device.kindText(), device.statusText(), battery, device.detailText());
    return QVariant();
}

static QColor dotColour(const PanelDevice &device)
{
    return QColor(device.boot ? look::Warning : device.online ? look::Accent : look::Line);
}

static QString batteryText(const PanelDevice &device)
{
    if (!device.isMouse)
        return QString();
    return QStringLiteral("%1%2 %")
        .arg(device.charging ? QStringLiteral("\u2191 ") : QString())
        .arg(device.battery);
}

static QString shortDetail(const PanelDevice &device)
{
    if (!device.isMouse)
        return QStringLiteral("address %1  \u00b7  version %2").arg(device.address, device.version);
    return QStringLiteral("%1  \u00b7  stage %2/%3  \u00b7  %4 Hz  \u00b7  %5")
        .arg(profileName(device.profile))
        .arg(device.stage + 1)
        .arg(device.stages)
        .arg(device.rate)
        .arg(device.address);
}

// Three lines: who and the battery, what and where it is, what it holds.
void DeviceCard::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto device = index.data(DeviceModel::DeviceRole).value<PanelDevice>();
    const bool selected = option.state & QStyle::State_Selected;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool focused = selected && option.state & QStyle::State_HasFocus;
    // The middle of a line of one pixel lies between two pixels' borders, that of two on one.
    const qreal inset = focused ? 1 : 0.5;
    const QRectF card = QRectF(option.rect).adjusted(inset, inset, -inset, -Gap - inset);
    painter->setPen(QPen(QColor(selected ? look::Accent : look::Line), focused ? 2 : 1));
    painter->setBrush(QColor(selected ? look::AccentGround : look::Card));
    painter->drawRoundedRect(card, Radius, Radius);

    const QFontMetrics metrics(option.font);
    QRect line = card.toRect().adjusted(Margin, 8, -Margin, 0);
    line.setHeight(metrics.height());
    // Filled on line, a ring off line: not by hue alone.
    const QRectF dot(line.left(), line.center().y() - 4, 9, 9);
    painter->setPen(QPen(dotColour(device).value() < 0x60 ? QColor(look::Quiet) : dotColour(device), 1.5));
    painter->setBrush(device.online || device.boot ? QBrush(dotColour(device)) : QBrush(Qt::NoBrush));
    painter->drawEllipse(dot);

    const auto write = [&](int left, QRgb colour, const QString &text) {
        const QRect room = line.adjusted(left, 0, 0, 0);
        painter->setPen(QColor(colour));
        painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                          metrics.elidedText(text, Qt::ElideRight, room.width()));
        line.translate(0, metrics.height() + 3);
    };
    painter->setPen(QColor(device.battery <= 20 ? look::Warning : look::Text));
    painter->drawText(line, Qt::AlignRight | Qt::AlignVCenter, batteryText(device));
    write(18, look::Text, QStringLiteral("%1  \u00b7  %2").arg(device.id, device.kindText()));
    const QString faults =
        device.faults > 0 ? QStringLiteral("  \u00b7  faults: %1").arg(device.faults) : QString();
    write(0, device.faults > 0 ? look::Warning : look::Text, device.statusText() + faults);
    write(0, look::Quiet, shortDetail(device));
    painter->restore();
}

QSize DeviceCard::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {200, 3 * QFontMetrics(option.font).height() + 6 + 16 + Gap};
}
