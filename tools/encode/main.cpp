// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// encode-catalogue [--udev[=GROUP]] SOURCE TARGET: writes the encoded catalogue, or the udev rules for its
// devices. SOURCE is checked for both; what its sensors count stands in driver_sensor.h beside it. A mistake
// is reported with file and line, and leaves TARGET as it was.

#include "tools/encode/UdevRules.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/stat.h>

// Of a source, which may be a device that never ends.
constexpr std::size_t SizeLimit = std::size_t{1024} * 1024;

static std::string besideIt(const std::string &path, const char *name)
{
    return path.substr(0, path.rfind('/') + 1) + name;
}

static int fail(const std::string &path, const char *reason)
{
    std::cerr << path << ": " << reason << '\n';
    return 1;
}

// Line 0 stands for the whole file.
static int fail(const std::string &path, int line, const std::string &reason)
{
    return fail(line == 0 ? path : path + ':' + std::to_string(line), reason.c_str());
}

static bool isSameFile(const char *one, const char *other)
{
    struct stat first = {};
    struct stat second = {};
    return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

// A device or a folder is no file that a failed write may remove.
static bool isRegularFile(const char *path)
{
    struct stat file = {};
    return stat(path, &file) == 0 && S_ISREG(file.st_mode);
}

// False after it has told the reason.
static bool takeSource(const std::string &path, const char *target, std::istringstream &source)
{
    std::ifstream file(path, std::ios::binary);
    std::string content(SizeLimit + 1, '\0');
    file.read(&content[0], std::streamsize(content.size()));
    const char *const reason = !file.is_open() || file.bad()            ? "cannot be read"
                               : std::size_t(file.gcount()) > SizeLimit ? "is larger than 1 MiB"
                               : isSameFile(path.c_str(), target)       ? "is the target too"
                                                                        : nullptr;
    content.resize(std::size_t(file.gcount()));
    source.str(content);
    return reason == nullptr || fail(path, reason) == 0;
}

// In the rules, a quote would end the name and a comma the value.
static bool isGroup(const std::string &name)
{
    return name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-") ==
           std::string::npos;
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
    const std::string group = udev != nullptr && *udev == '=' ? udev + 1 : "";
    if (!isGroup(group))
        return fail('"' + group + '"', "is no name of a group");
    const char *const from = argv[argc - 2];
    const char *const to = argv[argc - 1];
    const std::string sensorPath = besideIt(from, "driver_sensor.h");
    std::istringstream source;
    std::istringstream sensorHeader;
    if (!takeSource(from, to, source) || !takeSource(sensorPath, to, sensorHeader))
        return 1;
    const SensorHeader header = readSensorHeader(sensorHeader);
    if (!header.error.empty())
        return fail(sensorPath, header.errorLine, header.error);
    const EncodedCatalogue result = encodeCatalogue(source, header);
    if (!result.error.empty())
        return fail(from, result.errorLine, result.error);
    std::ofstream target(to, std::ios::binary);
    target << (udev == nullptr ? result.text : udevRules(result, group));
    target.close();
    if (!target) {
        if (isRegularFile(to))
            std::remove(to);
        return fail(to, "cannot be written");
    }
    return 0;
}
