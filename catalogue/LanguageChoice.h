// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The language that the user chose, kept as its index in decimal text under Language/Language. Which index an
// added language has depends on the other files of its folder, so index and name stand beside it under
// Language/Name, such as "7 Deutsch". An index that was stored without it, by an older release or by hand, is
// no longer the one there and counts alone. Any thread.
#pragma once

#include <QStringList>

class RegistryStore;
class UserStore;

constexpr int FirstAddedLanguage = 6; // the indices before it belong to files of fixed names

int storedLanguage(UserStore &store);
void storeLanguage(UserStore &store, int index, const QString &name = {});

// Moves the index that an older release left in the registry to the user's store, once. An old value of 0 is
// not moved and not removed.
void migrateLanguage(RegistryStore &registry, UserStore &store);

// Stores and returns the index that the stored name has now; the stored index if it has no name. `names`: by
// index. Without a file of that name an added language gets an index without a file, whose texts are those of
// 0, until the file is there again.
int followLanguage(UserStore &store, const QStringList &names);
