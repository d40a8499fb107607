// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/RegistryStore.h"

#include "environment/DataRoot.h"

#include <cstdlib>
#include <mutex>

QString registry::mouseVersionName(const DeviceCatalogue &catalogue, int driveIndex)
{
    return QStringLiteral("MouseVer") + catalogue.optionText("CID") + catalogue.text(driveIndex, "MID");
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
    readAgain();
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
