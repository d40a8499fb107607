// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulator in a process of its own, with pipes to its standard input and output. It ends with this
// object.
#pragma once

#include "tests/support/ChildProgram.h"

class EmulatorProgram : public ChildProgram
{
public:
    explicit EmulatorProgram(std::vector<std::string> words, bool quiet = false)
        : ChildProgram(withProgram(std::move(words)), quiet)
    {
    }

private:
    static std::vector<std::string> withProgram(std::vector<std::string> words)
    {
        words.insert(words.begin(), EMULATOR_PROGRAM);
        return words;
    }
};
