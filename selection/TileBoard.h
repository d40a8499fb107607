// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TileBoard: the carousel's pages with up to three tiles each. A tile is a button under a link indicator,
// an off-line label and a rate badge, whose object names end in the number of the device. Main thread.
#pragma once

#include "device/record/DeviceAllInfo.h"
#include "presentation/Widgets.h"

#include <QLabel>
#include <vector>

class QStackedWidget;

// "OnLine1.png" and the like; mid: the model's.
QString tilePicture(bool unknown, bool online, int mid);

class TileBoard
{
public:
    struct Tile {
        mytoolButtonEnter *button;
        QLabel *offline;
        QLabel *link;
        QLabel *badge;
        DeviceAllInfo device; // as last shown
        bool wired;           // the link of the device when the tile was built, which chose the indicator
        uint16_t kind;        // its kind at that time, which chose the badge
    };

    // Builds its pages into `stack`, which owns them.
    TileBoard(QStackedWidget *stack, const QString &pictures);

    void clear();
    // One tile for each device. Keeps the pages whose devices have the same links and kinds as before.
    void build(const std::vector<DeviceAllInfo> &devices);
    // Shows the state of the device on its tile, if it has one.
    void refresh(const DeviceAllInfo &device);
    // Names the tiles in the language of this index.
    void setLanguage(int index);
    // For the present tiles and for those built later.
    void setOfflineTip(const QString &tip, const QFont &font);
    const std::vector<Tile> &tiles() const { return all_; }

private:
    bool pageFits(const std::vector<DeviceAllInfo> &devices, int first, int count) const;
    void dropPagesFrom(int page);
    void addPage(const std::vector<DeviceAllInfo> &devices, int first, int count);
    QLabel *addLabel(QWidget *page, const QString &name, const QString &picture) const;
    void show(Tile &tile, const DeviceAllInfo &device);
    void name(const Tile &tile) const;
    Tile makeTile(QWidget *page, int index, const DeviceAllInfo &device);

    QStackedWidget *stack_;
    QString folder_;
    int language_ = 0;
    QString offlineTip_;
    QFont offlineFont_;
    std::vector<Tile> all_;
};
