// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The media keys that a button can send, as usages of the HID Consumer page.
#pragma once

#include <array>
#include <cstdint>

enum class MediaKey : uint16_t {
    Player = 0x0183,
    PlayPause = 0x00CD,
    NextTrack = 0x00B5,
    PreviousTrack = 0x00B6,
    Stop = 0x00B7,
    Mute = 0x00E2,
    VolumeUp = 0x00E9,
    VolumeDown = 0x00EA,
    Mail = 0x018A,
    Calculator = 0x0192,
    Files = 0x0194,
    HomePage = 0x0223,
    Search = 0x0221,
    Forward = 0x0225,
    Back = 0x0224,
    StopLoading = 0x0226,
    Reload = 0x0227,
    Bookmarks = 0x022A,
};

constexpr std::array<MediaKey, 18> MediaKeys = {
    MediaKey::Player, MediaKey::PlayPause,  MediaKey::NextTrack, MediaKey::PreviousTrack,
    MediaKey::Stop,   MediaKey::Mute,       MediaKey::VolumeUp,  MediaKey::VolumeDown,
    MediaKey::Mail,   MediaKey::Calculator, MediaKey::Files,     MediaKey::HomePage,
    MediaKey::Search, MediaKey::Forward,    MediaKey::Back,      MediaKey::StopLoading,
    MediaKey::Reload, MediaKey::Bookmarks,
};
