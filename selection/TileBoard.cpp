// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/TileBoard.h"

#include "catalogue/DeviceKinds.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "presentation/DeviceNames.h"
#include "presentation/FirstShow.h"
#include "presentation/ModelPicture.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QStackedWidget>
#include <algorithm>

namespace
{

constexpr int TilesOnPage = 3;
constexpr QSize TileSize{284, 360};
constexpr QSize IndicatorSize{32, 32};
constexpr QSize BadgeSize{42, 26};
constexpr int IndicatorY = 20;
constexpr int BadgeY = 10;

struct TilePlace {
    int tileX;
    int indicatorX;
    int badgeX;
};
// By the number of tiles on the page.
constexpr TilePlace Places[TilesOnPage][TilesOnPage] = {
    {{305, 530, 312}, {}, {}},
    {{135, 360, 142}, {445, 665, 452}, {}},
    {{0, 225, 7}, {300, 525, 307}, {600, 825, 607}},
};

} // namespace

QString tilePicture(bool unknown, bool online, int mid)
{
    if (unknown)
        return QStringLiteral("Unknow.png");
    const QString stem = online ? QStringLiteral("OnLine") : QStringLiteral("DisOnlin");
    return stem + QString::number(pictureNumber(mid)) + QStringLiteral(".png");
}

TileBoard::TileBoard(QStackedWidget *tileStack, const QString &pictures)
    : stack_(tileStack), folder_(pictures)
{
}

void TileBoard::clear() { dropPagesFrom(0); }

void TileBoard::dropPagesFrom(int first)
{
    const auto tiles = std::min(all_.size(), std::size_t(first * TilesOnPage));
    all_.erase(all_.begin() + std::ptrdiff_t(tiles), all_.end());
    while (stack_->count() > first) {
        QWidget *page = stack_->widget(first);
        stack_->removeWidget(page);
        page->hide();
        page->deleteLater();
    }
}

bool TileBoard::pageFits(const std::vector<DeviceAllInfo> &devices, int first, int count) const
{
    const int tiles = qMin(TilesOnPage, int(all_.size()) - first);
    for (int i = first; tiles == count && i < first + count; ++i) {
        const DeviceAllInfo &device = devices[std::size_t(i)];
        const Tile &tile = all_[std::size_t(i)];
        if (tile.wired != device.Usb || tile.kind != device.DeviceKind)
            return false;
    }
    return tiles == count;
}

void TileBoard::build(const std::vector<DeviceAllInfo> &devices)
{
    const int total = int(devices.size());
    bool fits = true;
    for (int first = 0; first < total; first += TilesOnPage) {
        const int count = qMin(TilesOnPage, total - first);
        fits = fits && pageFits(devices, first, count);
        if (!fits) {
            dropPagesFrom(first / TilesOnPage);
            addPage(devices, first, count);
        }
        for (int i = first; i < first + count; ++i)
            show(all_[std::size_t(i)], devices[std::size_t(i)]);
    }
    dropPagesFrom((total + TilesOnPage - 1) / TilesOnPage);
    stack_->setCurrentIndex(0);
}

void TileBoard::addPage(const std::vector<DeviceAllInfo> &devices, int first, int count)
{
    auto *page = new QWidget;
    for (int i = 0; i < count; ++i) {
        const TilePlace &place = Places[count - 1][i];
        const Tile tile = makeTile(page, first + i, devices[first + i]);
        tile.button->setGeometry({{place.tileX, 0}, TileSize});
        tile.offline->setGeometry({{place.indicatorX, IndicatorY}, IndicatorSize});
        tile.link->setGeometry({{place.indicatorX, IndicatorY}, IndicatorSize});
        tile.badge->setGeometry({{place.badgeX, BadgeY}, BadgeSize});
        all_.push_back(tile);
    }
    stack_->addWidget(page);
}

// The label starts hidden; without a picture it stays empty.
QLabel *TileBoard::addLabel(QWidget *page, const QString &name, const QString &picture) const
{
    auto *label = new QLabel(page);
    label->setObjectName(name);
    if (!picture.isEmpty())
        setStyleSheetWhenShown(label, style::labelPicture(folder_, picture));
    label->hide();
    return label;
}

TileBoard::Tile TileBoard::makeTile(QWidget *page, int index, const DeviceAllInfo &device)
{
    const QString number = QString::number(index);
    auto *button = new mytoolButtonEnter(page);
    button->setObjectName(QStringLiteral("btn") + number);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::TabFocus);
    const QString link = device.Usb ? QStringLiteral("OnLineUsb.png") : QStringLiteral("OnLineWifi.png");
    const QString badge = QLatin1String(deviceKind(device.DeviceKind).badge);
    Tile tile{button,
              addLabel(page, QStringLiteral("label") + number, QStringLiteral("DisOnline.png")),
              addLabel(page, QStringLiteral("UsbWifi") + number, link),
              addLabel(page, QStringLiteral("Rate") + number, badge),
              device,
              device.Usb,
              device.DeviceKind};
    tile.offline->setToolTip(offlineTip_);
    tile.offline->setFont(offlineFont_);
    tile.badge->setVisible(!badge.isEmpty());
    // Clicks on these labels reach the button below; the off-line label keeps them, for its tool tip.
    tile.link->setAttribute(Qt::WA_TransparentForMouseEvents);
    tile.badge->setAttribute(Qt::WA_TransparentForMouseEvents);
    return tile;
}

void TileBoard::refresh(const DeviceAllInfo &device)
{
    for (Tile &tile : all_)
        if (tile.device.DevicePath == device.DevicePath)
            show(tile, device);
}

void TileBoard::show(Tile &tile, const DeviceAllInfo &device)
{
    tile.device = device;
    const bool unknown = device.DriveIndex == unknownIndex();
    const bool linked = unknown || device.Online;
    setStyleSheetWhenShown(tile.button,
                           style::tile(folder_, tilePicture(unknown, device.Online, device.Mid)) +
                               style::tileHover());
    name(tile);
    tile.link->setVisible(linked);
    tile.offline->setVisible(!linked);
}

void TileBoard::name(const Tile &tile) const
{
    const DeviceAllInfo &device = tile.device;
    const bool unknown = device.DriveIndex == unknownIndex();
    const char *const form = unknown ? "DeviceUnknown" : device.Online ? "DeviceOnline" : "DeviceOffline";
    tile.button->setAccessibleName(
        language::text(language::Section::home, form, language_)
            .arg(deviceModelText(device, language_), deviceLinkText(device, language_)));
}

void TileBoard::setLanguage(int index)
{
    language_ = index;
    for (const Tile &tile : all_)
        name(tile);
}

void TileBoard::setOfflineTip(const QString &tip, const QFont &font)
{
    offlineTip_ = tip;
    offlineFont_ = font;
    for (const Tile &tile : all_) {
        tile.offline->setToolTip(tip);
        tile.offline->setFont(font);
    }
}
