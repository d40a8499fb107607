// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the selection page makes of the devices that a search found: duplicates, receivers that a cable
// makes pointless, and what a click on the tile of a silent mouse means. Pure; any thread.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <array>
#include <vector>

// How many devices of each link carry each model.
class LinkTally
{
public:
    static constexpr int Links = 5; // cable, then the receivers of 1, 2, 4 and 8 kHz
    static constexpr int Models = 15;

    void count(const DeviceAllInfo &device);

    // Walks as many links as the catalogue has models, which may leave some out. True when one of them has
    // two of a model. Otherwise receivers of a model that is on its cable are taken from the list.
    bool settle(std::vector<DeviceAllInfo> &devices, int deviceTotal) const;

private:
    static int row(const DeviceAllInfo &device);

    std::array<std::array<uint32_t, Models>, Links> counters_{};
};

// The picture of a device's report rate class, or empty.
QString rateBadge(uint16_t deviceKind);
// "OnLine1.png" and the like.
QString tilePicture(bool unknown, bool online, int mid);

enum class TileDecision : uint8_t {
    Pair,          // nothing is known of the mouse: it must be paired
    AskForPairing, // ask first
    EnterReceiver, // the receiver's own pages, where its upgrade is offered
    WarnToWire,    // the mouse has new firmware, for which it must be on its cable
};

// mouseVersion: as last read from that model, empty when never.
TileDecision decideOfflineTile(const QString &mouseVersion, bool mouseIsNew, bool receiverIsNew);

// Exactly two devices of one model of which the clicked one is silent and the other is not.
struct TwinAnswers {
    bool first;
    bool second;
};
bool isSilentTwin(const std::vector<DeviceAllInfo> &devices, int clicked, TwinAnswers online);
