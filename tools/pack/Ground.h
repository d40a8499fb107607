// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The ground of a window is dark, and its gradients pass so few values that each of them is a wide band; red,
// green and blue step at different places, so the bands differ in hue. The renderer knows no values between
// two steps. The ground is therefore drawn in four times its light, and the two bits by which that is finer
// are dithered.
#pragma once

#include <QImage>

constexpr int GroundLight = 4;

// The picture on its ground, whose colours are GroundLight times as bright as they shall be.
QImage onGround(const QImage &picture, const QImage &brightGround);
