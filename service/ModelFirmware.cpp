// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/ModelFirmware.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/FirmwareSearch.h"

QString ModelFirmware::baseName(int target) const
{
    const DeviceCatalogue catalogue;
    const int index = catalogue.find(cid, mid);
    const QString key = firmwareKey(target, connectionKind);
    return index == catalogue.total() || key.isEmpty() ? QString()
                                                       : catalogue.text(index, key.toLatin1().constData());
}

QByteArray ModelFirmware::find(int target, const QString &version) const
{
    return findFirmware(target, version, baseName(target), cid, mid, connectionKind);
}

QByteArray ModelFirmware::findForRepair(int target) const
{
    return findRepairFirmware(target, {}, baseName(target), cid, mid, connectionKind);
}
