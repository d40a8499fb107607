// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/UserStore.h"

#include "environment/DataRoot.h"

#include <cstdlib>
#include <mutex>

UserStore &UserStore::instance()
{
    static std::mutex mutex;
    static UserStore *store = nullptr;
    const std::lock_guard lock(mutex);
    if (store == nullptr) {
        store = new UserStore(dataRoot() + QStringLiteral("/Macro.ini"));
        std::atexit([] { store->flush(); });
    }
    return *store;
}
