// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A picture with a palette is a quarter as much to decode as one with four bytes for each pixel, and the
// large grounds of the pages hold few colours: those of their shades, and rare ones along the edges.
#pragma once

#include <QImage>

// How far each of a rare colour's red, green, blue and alpha may move, of 255.
constexpr int PaletteTolerance = 8;
// One pixel in so many may move. A shade that moved would show steps.
constexpr int PaletteRarity = 100;

// The picture in at most 256 colours, unchanged where it has no more; null where the limits do not do.
QImage withPalette(const QImage &picture);
