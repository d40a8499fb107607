// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// encode-catalogue [--udev] SOURCE TARGET: writes the encoded catalogue, or the udev rules for its devices.
// An error is reported with file and line.

#include "tools/encode/CatalogueSource.h"
#include "tools/encode/UdevRules.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

static EncodedCatalogue convert(std::istream &source, bool udev)
{
    if (!udev)
        return encodeCatalogue(source);
    UdevRules rules = udevRules(source);
    return {std::move(rules.text), std::move(rules.error), 1};
}

int main(int argc, char **argv)
{
    const bool udev = argc > 1 && std::strcmp(argv[1], "--udev") == 0;
    if (argc != (udev ? 4 : 3)) {
        std::cerr << "usage: encode-catalogue [--udev] SOURCE TARGET\n";
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
