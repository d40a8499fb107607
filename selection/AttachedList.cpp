// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/AttachedList.h"

#include "presentation/ModelPicture.h"

#include <algorithm>

namespace
{

struct LinkRow {
    uint16_t kind;
    const char *badge;
};

// In the order of the tally's rows behind the cable.
constexpr LinkRow ReceiverRows[] = {
    {Receiver1K, "1KHz.png"}, {Receiver2K, "2KHz.png"}, {Receiver4K, "4KHz.png"}, {Receiver8K, "8KHz.png"}};
constexpr uint16_t FastCableKind = 3;

} // namespace

int LinkTally::row(const DeviceAllInfo &device)
{
    if (device.Usb)
        return 0;
    const auto *found = std::find_if(std::begin(ReceiverRows), std::end(ReceiverRows),
                                     [&](const LinkRow &link) { return link.kind == device.DeviceKind; });
    return found == std::end(ReceiverRows) ? -1 : int(found - std::begin(ReceiverRows)) + 1;
}

void LinkTally::count(const DeviceAllInfo &device)
{
    const int link = row(device);
    if (link >= 0 && device.DriveIndex >= 0 && device.DriveIndex < Models)
        ++counters_[std::size_t(link)][std::size_t(device.DriveIndex)];
}

bool LinkTally::settle(std::vector<DeviceAllInfo> &devices, int deviceTotal) const
{
    for (int r = 0; r < deviceTotal; ++r) {
        if (r < Links) {
            const auto &models = counters_[std::size_t(r)];
            if (std::any_of(models.begin(), models.end(), [](uint32_t count) { return count > 1; }))
                return true;
        }
        if (r >= Models || counters_[0][std::size_t(r)] != 1)
            continue;
        devices.erase(std::remove_if(devices.begin(), devices.end(),
                                     [r](const DeviceAllInfo &d) { return !d.Usb && d.DriveIndex == r; }),
                      devices.end());
    }
    return false;
}

QString rateBadge(uint16_t deviceKind)
{
    if (deviceKind == FastCableKind)
        return QStringLiteral("8KHz.png");
    for (const LinkRow &link : ReceiverRows)
        if (link.kind == deviceKind)
            return QLatin1String(link.badge);
    return {};
}

QString tilePicture(bool unknown, bool online, int mid)
{
    if (unknown)
        return QStringLiteral("Unknow.png");
    const QString stem = online ? QStringLiteral("OnLine") : QStringLiteral("DisOnlin");
    return stem + QString::number(pictureNumber(mid)) + QStringLiteral(".png");
}

TileDecision decideOfflineTile(const QString &mouseVersion, bool mouseIsNew, bool receiverIsNew)
{
    if (mouseVersion.isEmpty())
        return TileDecision::Pair;
    if (mouseIsNew == receiverIsNew)
        return TileDecision::AskForPairing;
    return receiverIsNew ? TileDecision::EnterReceiver : TileDecision::WarnToWire;
}

bool isSilentTwin(const std::vector<DeviceAllInfo> &devices, int clicked, TwinAnswers online)
{
    if (devices.size() != 2 || devices[0].Cid != devices[1].Cid || devices[0].Mid != devices[1].Mid)
        return false;
    return clicked == 1 ? online.first && !online.second : clicked == 0 && !online.first && online.second;
}
