// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every key of the catalogue: its section, how it is stored, and what it may hold. The program's reader
// takes only the coding from here and reads any value; the encoder refuses what does not fit, and
// docs/catalogue.md is checked against these rows.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

enum class CatalogueSection { Option, Model };

enum class KeyForm {
    Number,        // decimal, min to max
    Numbers,       // `items` of them
    Ids,           // USB ids, at least one
    Name,          // base name of firmware files
    Sensor,        // a name from driver_sensor.h
    StageDpis,     // the DPI of each of `items` stages
    StageColors,   // red, green and blue of 1 to `items` stages
    DpiRanges,     // min, max and step of 1 to `items` ranges, and the flag value
    DefaultAction, // of a button
    ResetDefaults, // long range, -1 to 1, and the receiver's light setting, -1 to 3
};

struct CatalogueKey {
    std::string_view name;
    CatalogueSection section;
    bool isEncoded; // stored as Base64, item by item
    bool isNeeded;
    KeyForm form;
    int min = 0;
    int max = 0;
    int items = 1;
};

constexpr bool Encoded = true;
constexpr bool Plain = false;
constexpr bool Needed = true;
constexpr bool Optional = false;

// MID is plain although CID is encoded; that is part of the format.
constexpr std::array<CatalogueKey, 41> CatalogueKeys = {{
    {"DeviceTotal", CatalogueSection::Option, Plain, Needed, KeyForm::Number, 1, 255},
    {"VID", CatalogueSection::Option, Encoded, Needed, KeyForm::Ids},
    {"USB_PID", CatalogueSection::Option, Encoded, Needed, KeyForm::Ids},
    {"Wireless_PID", CatalogueSection::Option, Encoded, Optional, KeyForm::Ids},
    {"Wireless2_PID", CatalogueSection::Option, Encoded, Optional, KeyForm::Ids},
    {"Wireless4_PID", CatalogueSection::Option, Encoded, Optional, KeyForm::Ids},
    {"Wireless8_PID", CatalogueSection::Option, Encoded, Optional, KeyForm::Ids},
    {"Boot_PID", CatalogueSection::Option, Plain, Optional, KeyForm::Ids},
    {"InterfaceId", CatalogueSection::Option, Plain, Optional, KeyForm::Number, 0, 255},
    {"DeviceId", CatalogueSection::Option, Plain, Optional, KeyForm::Number, 0, 255},
    {"CID", CatalogueSection::Option, Encoded, Needed, KeyForm::Number, 1, 255},
    {"Transition", CatalogueSection::Option, Plain, Optional, KeyForm::Number, 0, 1},
    {"ShowBatteryValue", CatalogueSection::Option, Plain, Optional, KeyForm::Number, 0, 1},
    {"LabelColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"ButtonColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"SliderColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"ComboxTextColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"ComboxSelectColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"ComboxBackGroundColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"LinEditColor", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"LinEditColorSecond", CatalogueSection::Option, Plain, Needed, KeyForm::Numbers, 0, 255, 3},
    {"MID", CatalogueSection::Model, Plain, Needed, KeyForm::Number, 1, 255},
    {"Sensor", CatalogueSection::Model, Encoded, Needed, KeyForm::Sensor},
    {"DPIMaxGrade", CatalogueSection::Model, Plain, Needed, KeyForm::Number, 1, 8},
    {"DPIGrade", CatalogueSection::Model, Plain, Needed, KeyForm::StageDpis, 1, 65535, 8},
    {"DPIColor", CatalogueSection::Model, Plain, Needed, KeyForm::StageColors, 0, 255, 8},
    {"DPIRange", CatalogueSection::Model, Plain, Needed, KeyForm::DpiRanges, 1, 65535, 4},
    {"XIn1", CatalogueSection::Model, Plain, Optional, KeyForm::Number, 1, 2},
    {"KeyNumber", CatalogueSection::Model, Plain, Needed, KeyForm::Number, 1, 12},
    {"KeyParam1", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"KeyParam2", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"KeyParam3", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"KeyParam4", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"KeyParam5", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"KeyParam6", CatalogueSection::Model, Plain, Optional, KeyForm::DefaultAction},
    {"Adveanced", CatalogueSection::Model, Plain, Needed, KeyForm::ResetDefaults},
    {"MM", CatalogueSection::Model, Encoded, Optional, KeyForm::Name},
    {"DM", CatalogueSection::Model, Encoded, Optional, KeyForm::Name},
    {"D2M", CatalogueSection::Model, Encoded, Optional, KeyForm::Name},
    {"D4M", CatalogueSection::Model, Encoded, Optional, KeyForm::Name},
    {"D8M", CatalogueSection::Model, Encoded, Optional, KeyForm::Name},
}};

// Null for a name that the format does not have.
inline const CatalogueKey *catalogueKey(std::string_view name)
{
    const auto *const found = std::find_if(CatalogueKeys.begin(), CatalogueKeys.end(),
                                           [name](const CatalogueKey &row) { return row.name == name; });
    return found == CatalogueKeys.end() ? nullptr : found;
}

// Whether its values are stored as Base64, whichever section they stand in.
inline bool isEncodedKey(std::string_view name)
{
    const CatalogueKey *const key = catalogueKey(name);
    return key != nullptr && key->isEncoded;
}
