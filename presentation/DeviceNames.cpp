// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/DeviceNames.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DeviceKinds.h"
#include "presentation/language/LanguageTables.h"

namespace
{

QString headText(const char *key, int language)
{
    return language::text(language::Section::home, key, language);
}

} // namespace

QString deviceModelText(const DeviceAllInfo &info, int language)
{
    return info.DriveIndex < DeviceCatalogue().total() ? headText("HeadModel", language).arg(info.Mid)
                                                       : headText("HeadUnknown", language);
}

QString deviceLinkText(const DeviceAllInfo &info, int language)
{
    const int kHz = connectionKind(info.DeviceKind);
    return info.Usb || kHz == 0 ? headText("HeadCable", language)
                                : headText("HeadReceiver", language).arg(kHz);
}
