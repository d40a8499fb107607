// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/LanguageChoice.h"

#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"

namespace
{

QString languageName() { return QStringLiteral("Language"); }
QString nameKey() { return QStringLiteral("Name"); }

void storeIndex(UserStore &store, int index)
{
    store.WriteValue(languageName(), languageName(), QString::number(index));
}

} // namespace

int storedLanguage(UserStore &store) { return store.ReadText(languageName(), languageName()).toInt(); }

void storeLanguage(UserStore &store, int index, const QString &name)
{
    storeIndex(store, index);
    if (name.isEmpty())
        store.Remove(languageName(), nameKey());
    else
        store.WriteValue(languageName(), nameKey(), name);
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

int followLanguage(UserStore &store, const QStringList &names)
{
    const int stored = storedLanguage(store);
    const QString name = store.ReadText(languageName(), nameKey());
    if (name.isEmpty() || names.value(stored) == name)
        return stored;
    int index = int(names.indexOf(name));
    if (index < 0)
        index = stored < FirstAddedLanguage ? stored : 0;
    if (index != stored)
        storeIndex(store, index);
    return index;
}
