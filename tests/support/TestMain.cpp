// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "tests/support/TestMain.h"

#include <cstdio>
#include <vector>

namespace
{

struct Entry {
    const char *name;
    testmain::Run run;
};

std::vector<Entry> &entries()
{
    static std::vector<Entry> all;
    return all;
}

} // namespace

bool testmain::add(const char *name, Run run)
{
    entries().push_back({name, run});
    return true;
}

int main(int argc, char **argv)
{
    for (const Entry &entry : entries()) {
        if (argc > 1 && qstricmp(entry.name, argv[1]) == 0) {
            argv[1] = argv[0];
            return entry.run(argc - 1, argv + 1);
        }
    }
    std::fprintf(stderr, "Usage: %s class [option of QtTest ...]\n", argv[0]);
    for (const Entry &entry : entries())
        std::fprintf(stderr, "  %s\n", entry.name);
    return 2;
}
