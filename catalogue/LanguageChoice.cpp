// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/LanguageChoice.h"

#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"

namespace
{

QString languageName() { return QStringLiteral("Language"); }
QString nameKey() { return QStringLiteral("Name"); }

// What stands before the name.
QString prefix(int index) { return QString::number(index) + QLatin1Char(' '); }

} // namespace

int storedLanguage(UserStore &store) { return store.ReadText(languageName(), languageName()).toInt(); }

void storeLanguage(UserStore &store, int index, const QString &name)
{
    store.WriteValue(languageName(), languageName(), QString::number(index));
    if (name.isEmpty())
        store.Remove(languageName(), nameKey());
    else
        store.WriteValue(languageName(), nameKey(), prefix(index) + name);
}

void migrateLanguage(RegistryStore &registry, UserStore &store)
{
    const QString name = QString::fromLatin1(registry::LanguageIndex);
    const int old = registry.value(registry::OldLanguageGroup, name).toInt();
    if (old == 0)
        return;
    storeLanguage(store, old);
    // Removes the old value only after the new one is on the disk.
    if (store.flush())
        registry.removeValue(registry::OldLanguageGroup, name);
}

int followLanguage(UserStore &store, const QStringList &names)
{
    const int stored = storedLanguage(store);
    const QString chosen = store.ReadText(languageName(), nameKey());
    if (!chosen.startsWith(prefix(stored)))
        return stored;
    const QString name = chosen.mid(prefix(stored).size());
    if (names.value(stored) == name)
        return stored;
    int index = int(names.indexOf(name));
    if (index < 0) // another language's index will not do, one without a file is read as 0
        index = stored >= FirstAddedLanguage && stored < names.size() ? int(names.size()) : stored;
    if (index != stored)
        storeLanguage(store, index, name);
    return index;
}
