// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// encode-catalogue [--udev[=GROUP]] SOURCE TARGET: writes the encoded catalogue, or the udev rules for its
// devices. SOURCE is checked for both; what its sensors count stands in driver_sensor.h beside it. An error
// is reported with file and line.

#include "tools/encode/UdevRules.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

static std::string besideIt(const std::string &path, const char *name)
{
    return path.substr(0, path.rfind('/') + 1) + name;
}

static int fail(const std::string &path, const char *reason)
{
    std::cerr << path << ": " << reason << '\n';
    return 1;
}

static int fail(const std::string &path, int line, const std::string &reason)
{
    std::cerr << path << ':' << line << ": " << reason << '\n';
    return 1;
}

int main(int argc, char **argv)
{
    constexpr char option[] = "--udev";
    const bool chosen = argc > 1 && std::strncmp(argv[1], option, sizeof option - 1) == 0;
    const char *const udev = chosen ? argv[1] + sizeof option - 1 : nullptr;
    if (argc != (udev != nullptr ? 4 : 3) || (udev != nullptr && *udev != '\0' && *udev != '=')) {
        std::cerr << "usage: encode-catalogue [--udev[=GROUP]] SOURCE TARGET\n";
        return 2;
    }
    const char *const from = argv[argc - 2];
    const char *const to = argv[argc - 1];
    std::ifstream source(from);
    if (!source)
        return fail(from, "cannot be read");
    const std::string sensorPath = besideIt(from, "driver_sensor.h");
    std::ifstream sensorHeader(sensorPath);
    const SensorHeader header = readSensorHeader(sensorHeader);
    if (!sensorHeader.is_open())
        return fail(sensorPath, "cannot be read");
    if (!header.error.empty())
        return fail(sensorPath, header.errorLine, header.error);
    const EncodedCatalogue result = encodeCatalogue(source, header);
    if (!result.error.empty())
        return fail(from, result.errorLine, result.error);
    std::ofstream target(to, std::ios::binary);
    target << (udev == nullptr ? result.text : udevRules(result, *udev == '=' ? udev + 1 : udev));
    target.close();
    if (!target) {
        std::remove(to);
        return fail(to, "cannot be written");
    }
    return 0;
}
