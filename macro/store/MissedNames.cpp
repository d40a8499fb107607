// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/MissedNames.h"

#include "macro/store/MacroBlockCodec.h"

#include <QHash>
#include <QSet>

namespace macro
{

namespace
{

struct MissedName {
    QSet<QString> older; // one of them stands in the block
    QString name;
};
QHash<int, MissedName> missedNames; // by button

} // namespace

void setMissedName(int button, const QString &older, const QString &name)
{
    MissedName &missedName = missedNames[button];
    missedName.older.insert(older);
    missedName.name = name;
}

void renameMissed(const QString &name, const QString &newName)
{
    for (MissedName &each : missedNames)
        if (each.name == name) {
            each.older.insert(name);
            each.name = newName;
        }
}

void dropMissedName(int button) { missedNames.remove(button); }

void dropMissedNamesOf(const QString &name)
{
    for (auto each = missedNames.begin(); each != missedNames.end();)
        each = each->name == name ? missedNames.erase(each) : std::next(each);
}

QString macroName(const FlashDataMap &record, int button)
{
    const QString inBlock = blockName(record.MacroBlocks[button]);
    const auto missedName = missedNames.constFind(button);
    const bool isOlder = missedName != missedNames.constEnd() && missedName->older.contains(inBlock);
    return isOlder ? missedName->name : inBlock;
}

} // namespace macro
