// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LampColor.h"

#include "lighting/LightTables.h"

#include <cmath>

namespace
{

constexpr double Pi = 3.14159265358979;
constexpr int SlowestMs = 6000; // a turn at speed 1
constexpr int SpeedStepMs = 500;
constexpr int WaveSpeed = 5; // of the colour wave, which has no speed to set
constexpr int NeonColors = 7;
constexpr double Faintest = 0.06;       // of a breath, so that the lamps keep their colour
constexpr double GoldenTurn = 0.618034; // between the colours of two breaths: neighbours never look alike

int turnMs(const ShownLight &light)
{
    const int speed = light.mode == ColorWave ? WaveSpeed : light.speed;
    return SlowestMs - SpeedStepMs * (qBound(1, speed, LightScaleTop) - 1);
}

double fraction(double value) { return value - std::floor(value); }

// 1 at the beginning of a turn, 0 in its middle.
double breath(double turns) { return (1 + std::cos(2 * Pi * turns)) / 2; }

QColor dimmed(const QColor &color, double share)
{
    return QColor::fromRgbF(color.redF() * share, color.greenF() * share, color.blueF() * share);
}

QColor hue(double turn) { return QColor::fromHsvF(fraction(turn), 1, 1); }

} // namespace

bool moves(const ShownLight &light)
{
    return light.mode > LightOff && light.mode < LightModeCount && light.mode != Steady;
}

double turnsIn(const ShownLight &light, qint64 ms) { return double(ms) / turnMs(light); }

QColor lampColor(const ShownLight &light, double place, double turns)
{
    const double share = double(qBound(1, light.brightness, LightScaleTop)) / LightScaleTop;
    const auto breathing = [&](double at) { return share * (Faintest + (1 - Faintest) * breath(at)); };
    switch (light.mode) {
    case ColorFlow:
        return dimmed(hue(place - turns), share);
    case Breathing:
        return dimmed(light.color, breathing(turns));
    case Steady:
        return dimmed(light.color, share);
    case Neon:
        return dimmed(hue(std::floor(turns * NeonColors) / NeonColors), share);
    case ColorBreathing:
        return dimmed(hue(std::floor(turns + 0.5) * GoldenTurn), breathing(turns));
    case ColorWave:
        return dimmed(hue(place), breathing(turns - place));
    default:
        return Qt::black;
    }
}
