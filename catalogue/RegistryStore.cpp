// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/RegistryStore.h"

#include "environment/DataRoot.h"

#include <cstdlib>
#include <mutex>

QString registry::mouseVersionName(int cid, int mid)
{
    return QStringLiteral("MouseVer%1%2").arg(QString::number(cid), QString::number(mid));
}

RegistryStore &RegistryStore::instance()
{
    static std::mutex mutex;
    static RegistryStore *store = nullptr;
    const std::lock_guard lock(mutex);
    if (store == nullptr) {
        store = new RegistryStore(dataRoot() + QStringLiteral("/Registry.ini"));
        std::atexit([] { store->flush(); });
    }
    return *store;
}

QString RegistryStore::value(const char *group, const QString &name)
{
    return ReadText(QString::fromLatin1(group), name);
}

void RegistryStore::setValue(const char *group, const QString &name, const QString &value)
{
    WriteValue(QString::fromLatin1(group), name, value);
}

void RegistryStore::removeValue(const char *group, const QString &name)
{
    Remove(QString::fromLatin1(group), name);
}
