// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/missed/MissedNames.h"

#include "device/DeviceState.h"
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
QHash<QString, QHash<int, MissedName>> missedNames; // by mouse and button

} // namespace

QString selectedMouse()
{
    static QString last;
    const DeviceAllInfo info = SelectedDevice::info();
    if (!info.DevicePath.isEmpty())
        last = QStringLiteral("%1 %2 %3").arg(info.Cid).arg(info.Mid).arg(info.DevicePath);
    return last;
}

void setMissedName(int button, const QString &older, const QString &name)
{
    MissedName &missedName = missedNames[selectedMouse()][button];
    missedName.older.insert(older);
    missedName.name = name;
}

void renameMissed(const QString &name, const QString &newName)
{
    for (auto &ofMouse : missedNames)
        for (MissedName &each : ofMouse)
            if (each.name == name) {
                each.older.insert(name);
                each.name = newName;
            }
}

void dropMissedName(int button) { missedNames[selectedMouse()].remove(button); }

void dropMissedNamesOf(const QString &name)
{
    for (auto &ofMouse : missedNames)
        for (auto each = ofMouse.begin(); each != ofMouse.end();)
            each = each->name == name ? ofMouse.erase(each) : std::next(each);
}

QString macroName(const FlashDataMap &record, int button)
{
    const QString inBlock = blockName(record.MacroBlocks[button]);
    const MissedName missedName = missedNames.value(selectedMouse()).value(button);
    return missedName.older.contains(inBlock) ? missedName.name : inBlock;
}

} // namespace macro
