// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The user's preferences: "/Macro.ini" below the data root. Any thread.
#pragma once

#include "catalogue/IniStore.h"

class UserStore : public IniStore
{
public:
    // Made at the first use and never destroyed; pending edits are written when the process ends.
    static UserStore &instance();

    using IniStore::IniStore;
};
