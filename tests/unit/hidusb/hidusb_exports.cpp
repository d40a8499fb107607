// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The library exports the functions of its header and nothing else.
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>

static std::set<std::string> declaredNames()
{
    std::ifstream file(HIDUSB_HEADER);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    static const std::regex declaration(R"(\nHIDUSB_API[^(]*?(\w+)\()");
    std::set<std::string> names;
    for (std::sregex_iterator at(text.begin(), text.end(), declaration), end; at != end; ++at)
        names.insert((*at)[1]);
    return names;
}

static std::set<std::string> exportedNames()
{
    std::set<std::string> names;
    FILE *listing = popen("nm -D --defined-only --format=posix '" HIDUSB_LIBRARY "'", "r");
    char name[512];
    while (listing != nullptr && std::fscanf(listing, "%511s%*[^\n]", name) == 1)
        names.insert(name);
    if (listing != nullptr)
        pclose(listing);
    return names;
}

TEST(Exports, AreTheFunctionsOfTheHeader)
{
    const auto declared = declaredNames();
    EXPECT_GT(declared.size(), 40U);
    EXPECT_EQ(exportedNames(), declared);
}

TEST(Exports, TheFileHasNoVersion)
{
    const std::string path = HIDUSB_LIBRARY;
    EXPECT_EQ(path.substr(path.rfind('/')), "/libHIDUsb.so");
}
