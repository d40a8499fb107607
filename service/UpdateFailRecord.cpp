// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpdateFailRecord.h"

#include "catalogue/RegistryStore.h"
#include "device/FirmwareSearch.h"

#include <QStringList>

namespace
{

const QString Name = QLatin1String(registry::UpdateFailInfo);

}

std::optional<UpdateFailRecord> UpdateFailRecord::parse(const QString &text)
{
    const QStringList fields = text.split(QLatin1Char(','));
    int numbers[4] = {};
    if (fields.size() != 4)
        return std::nullopt;
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = fields[i].toInt(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    return UpdateFailRecord{numbers[0], numbers[1], numbers[2], numbers[3]};
}

QString UpdateFailRecord::text() const
{
    return QStringLiteral("%1,%2,%3,%4").arg(target).arg(connectionKind).arg(cid).arg(mid);
}

bool UpdateFailRecord::makesSense() const
{
    const DeviceCatalogue catalogue;
    return (target == TargetMouse || target == TargetReceiver) &&
           !firmwareKey(TargetReceiver, connectionKind).isEmpty() &&
           catalogue.find(cid, mid) != catalogue.total();
}

QString UpdateFailRecord::storedText() { return RegistryStore::instance().value(registry::BaseGroup, Name); }

bool UpdateFailRecord::store(const QString &text)
{
    RegistryStore &registry = RegistryStore::instance();
    if (text.isEmpty())
        registry.removeValue(registry::BaseGroup, Name);
    else
        registry.setValue(registry::BaseGroup, Name, text);
    return registry.flush();
}

void UpdateFailRecord::remove() { store({}); }
