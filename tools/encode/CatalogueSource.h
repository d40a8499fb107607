// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The readable source of the catalogue, and its encoded form. It is checked more
// strictly than the program reads it, so that a mistake fails the build instead of hiding a device.
//
//     ; comment
//     [Option]            the general values; DeviceTotal counts the models
//     VID=0x1209, 0x1234  a list of plain items
//     [Drive1]            the models, numbered from 1 without a gap
//
// A value is a row of items between commas; docs/catalogue.md has the keys. Quotes, backslashes, semicolons
// and "@" are syntax of the encoded file and are refused.
#pragma once

#include "tools/encode/SensorHeader.h"

#include <istream>
#include <string>
#include <vector>

struct EncodedCatalogue {
    std::string text;                  // the content of Config.ini
    std::vector<std::string> vendors;  // all USB ids in small letters, in the order of the source
    std::vector<std::string> products; // also of devices that wait for firmware
    std::string error;                 // of the source; empty without one
    int errorLine = 0;                 // counted from 1
};

EncodedCatalogue encodeCatalogue(std::istream &source, const SensorHeader &header);
