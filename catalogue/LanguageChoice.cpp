// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/LanguageChoice.h"

#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"

namespace
{
QString languageName() { return QStringLiteral("Language"); }
} // namespace

int storedLanguage(UserStore &store) { return store.ReadText(languageName(), languageName()).toInt(); }

void storeLanguage(UserStore &store, int index)
{
    store.WriteValue(languageName(), languageName(), QString::number(index));
}

int migrateLanguage(RegistryStore &registry, UserStore &store)
{
    const QString name = QString::fromLatin1(registry::LanguageIndex);
    const int old = registry.value(registry::OldLanguageGroup, name).toInt();
    if (old != 0) {
        storeLanguage(store, old);
        // Removes the old value only after the new one is on the disk.
        if (store.flush())
            registry.removeValue(registry::OldLanguageGroup, name);
    }
    return storedLanguage(store);
}
