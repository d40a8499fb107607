// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The readable source of the catalogue, and its encoded form. The source is stricter than what the program
// reads: a mistake must show at build time, not as a device that is never found.
//
//     ; comment
//     [Option]            the general values; DeviceTotal counts the models
//     VID=0x1209, 0x1234  a list of plain items
//     [Drive1]            the models, numbered from 1 without a gap
//
// A value is a row of items between commas. Quotes, backslashes, semicolons and "@" have a meaning in the
// encoded file and are refused.
#pragma once

#include <istream>
#include <string>

struct EncodedCatalogue {
    std::string text;  // the content of Config.ini
    std::string error; // what is wrong with the source; empty when nothing is
    int errorLine = 0; // counted from 1
};

EncodedCatalogue encodeCatalogue(std::istream &source);
