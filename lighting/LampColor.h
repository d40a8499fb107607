// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a light looks like: the colour of each of its lamps at a moment.
#pragma once

#include <QColor>

// As the controls show it; brightness and speed from 1 to LightScaleTop.
struct ShownLight {
    int mode = 0;
    QColor color;
    int brightness = 1;
    int speed = 1;
};

// Whether the lamps change with time.
bool moves(const ShownLight &light);
// How many of its turns a light makes in that time, by its speed.
double turnsIn(const ShownLight &light, qint64 ms);
// place: of the lamp in the row, from 0 to 1; turns: since the light began, which is a moment at which it
// shows well. Black is a dark lamp.
QColor lampColor(const ShownLight &light, double place, double turns);
