// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A picture with a palette decodes four times as fast as one with four bytes per pixel. The large backgrounds
// of the pages have few colours: their shades, and rare ones along the edges. The devices' pictures have some
// thousand shades, each of them near another.
#pragma once

#include <QImage>

// The most by which red, green, blue and alpha of a rare colour may change, of 255.
constexpr int PaletteTolerance = 8;
// At most one pixel in so many may change its colour. Changed shades would show steps.
constexpr int PaletteRarity = 100;
// With more of them the picture is dithered, if each colour is as near as this to one of the palette's.
constexpr int DitherTolerance = 4;

// The picture in at most 256 colours, unchanged when it has no more; null when the limits cannot be kept.
QImage withPalette(const QImage &picture);
