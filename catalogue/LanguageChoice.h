// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The language index that the user chose, kept as decimal text under Language/Language. Any thread.
#pragma once

class RegistryStore;
class UserStore;

int storedLanguage(UserStore &store);
void storeLanguage(UserStore &store, int index);

// Moves the index that an older release left in the registry to the user's store, once, and returns the
// current index. An old value of 0 is not moved and not removed.
int migrateLanguage(RegistryStore &registry, UserStore &store);
