// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page of the lights with the colour fields of both lights, to pick from.
#pragma once

#include "lighting/HueField.h"
#include "tests/widget/lighting/LightPage.h"

class PickPage : public LightPage
{
public:
    PickPage()
    {
        setBar({3, 1, 2, 3, 4, 7, 1});
        read(lightRecord(3));
    }

    HueField *field(int index) const { return find<HueField>(QLatin1String(LightCases[index].field)); }
};
