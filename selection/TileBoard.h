// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TileBoard: the carousel's pages with up to three tiles each. A tile is a button under a link indicator,
// an off-line label and a rate badge, whose object names end in the number of the device.
#pragma once

#include "device/record/DeviceAllInfo.h"
#include "presentation/Widgets.h"

#include <QLabel>
#include <vector>

class QStackedWidget;

class TileBoard
{
public:
    struct Tile {
        mytoolButtonEnter *button;
        QLabel *offline;
        QLabel *link;
        QLabel *badge;
    };

    // Builds its pages into `stack`, which owns them.
    TileBoard(QStackedWidget *stack, const QString &pictures);

    void clear();
    // Pages whose tiles differ in nothing but their pictures stay as they are.
    void build(const std::vector<DeviceAllInfo> &devices);
    // What a tile shows follows its device.
    void show(int index, const DeviceAllInfo &device);
    // Of the tiles there are and of those to come.
    void setOfflineTip(const QString &tip, const QFont &font);
    const std::vector<Tile> &tiles() const { return all_; }

private:
    // What a tile shows once and for all.
    struct Link {
        bool wired;
        uint16_t kind;
    };

    bool pageFits(const std::vector<DeviceAllInfo> &devices, int first, int count) const;
    void dropPagesFrom(int page);
    void addPage(const std::vector<DeviceAllInfo> &devices, int first, int count);
    QLabel *addLabel(QWidget *page, const QString &name, const QString &picture) const;
    Tile makeTile(QWidget *page, int index, const DeviceAllInfo &device);

    QStackedWidget *stack_;
    QString folder_;
    QString offlineTip_;
    QFont offlineFont_;
    std::vector<Tile> all_;
    std::vector<Link> links_; // of the tiles
};
