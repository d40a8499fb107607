// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// encode-catalogue SOURCE TARGET: writes the encoded catalogue, or says file:line of what is wrong.

#include "CatalogueSource.h"

#include <cstdio>
#include <fstream>
#include <iostream>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::cerr << "usage: encode-catalogue SOURCE TARGET\n";
        return 2;
    }
    std::ifstream source(argv[1]);
    if (!source) {
        std::cerr << argv[1] << ": cannot be read\n";
        return 1;
    }
    const EncodedCatalogue catalogue = encodeCatalogue(source);
    if (!catalogue.error.empty()) {
        std::cerr << argv[1] << ':' << catalogue.errorLine << ": " << catalogue.error << '\n';
        return 1;
    }
    std::ofstream target(argv[2], std::ios::binary);
    target << catalogue.text;
    target.close();
    if (!target) {
        std::cerr << argv[2] << ": cannot be written\n";
        std::remove(argv[2]);
        return 1;
    }
    return 0;
}
