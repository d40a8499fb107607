// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The values that other systems keep in their registry, with the same names and lifetimes:
// "/Registry.ini" below the data root. Any thread.
#pragma once

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/IniStore.h"

namespace registry
{

// One section for each registry key.
constexpr char BaseGroup[] = "Mouse Drive Test";             // UpdateFailInfo and the mouse versions
constexpr char OldLanguageGroup[] = "ZANVO Morlen Software"; // LanguageIndex of older releases
constexpr char RunGroup[] = "Run";                           // what starts at logon, named by the application

constexpr char UpdateFailInfo[] = "UpdateFailInfo";       // "target,ConnectionKind,CID,MID", decimal
constexpr char UpdateFailWaiting[] = "UpdateFailWaiting"; // more of them, with ";" between
constexpr char LanguageIndex[] = "LanguageIndex";

// "MouseVer" + CID + MID, the texts of the catalogue: the firmware version text of a mouse of this model as
// last read. A device without a section has no MID.
QString mouseVersionName(const DeviceCatalogue &catalogue, int driveIndex);

} // namespace registry

class RegistryStore : public IniStore
{
public:
    // Made at the first use and never destroyed; pending edits are written when the process ends.
    static RegistryStore &instance();

    using IniStore::IniStore;
    // As it stands in the file, which another process may have written meanwhile, with the edits that wait.
    // Reads the disk, so it is no part of an edit of the mouse's settings.
    QString value(const char *group, const QString &name);
    void setValue(const char *group, const QString &name, const QString &value);
    void removeValue(const char *group, const QString &name);
};
