// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// encode-catalogue [--udev[=GROUP]] SOURCE TARGET: writes the encoded catalogue, or the udev rules for its
// devices. An error is reported with file and line.

#include "tools/encode/CatalogueSource.h"
#include "tools/encode/UdevRules.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

static EncodedCatalogue convert(std::istream &source, const char *udev)
{
    if (udev == nullptr)
        return encodeCatalogue(source);
    UdevRules rules = udevRules(source, *udev == '=' ? udev + 1 : udev);
    return {std::move(rules.text), std::move(rules.error), 1};
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
    if (!source) {
        std::cerr << from << ": cannot be read\n";
        return 1;
    }
    const EncodedCatalogue result = convert(source, udev);
    if (!result.error.empty()) {
        std::cerr << from << ':' << result.errorLine << ": " << result.error << '\n';
        return 1;
    }
    std::ofstream target(to, std::ios::binary);
    target << result.text;
    target.close();
    if (!target) {
        std::cerr << to << ": cannot be written\n";
        std::remove(to);
        return 1;
    }
    return 0;
}
