// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What driver_sensor.h says of the sensors that the catalogue names. Each line is read by the rules of the
// program, and refused when it speaks of sensors and the program would take it otherwise than it stands.
#pragma once

#include <istream>
#include <map>
#include <string>
#include <vector>

struct SensorHeader {
    std::vector<std::string> sensors;                     // the names in the line "SENSORS"
    std::map<std::string, std::map<int, int>> codesByDpi; // of the sensors that count by a table
    std::string error;                                    // empty without one
    int errorLine = 0;                                    // counted from 1
};

SensorHeader readSensorHeader(std::istream &source);
// Whether the sensor can count each DPI of these ranges, a value of the form DpiRanges.
bool countsEachDpi(const std::string &sensor, const std::vector<std::string> &ranges,
                   const SensorHeader &header);
