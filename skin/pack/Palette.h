// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A picture with a palette is a quarter as much to decode as one with four bytes for each pixel, and the
// large grounds of the pages hold few colours.
#pragma once

#include <QImage>

// How far each of a colour's red, green, blue and alpha may move, of 255, to share a place in the palette.
constexpr int PaletteTolerance = 2;

// The picture in at most 256 colours, unchanged where it has no more; null where the tolerance does not do.
QImage withPalette(const QImage &picture);
