// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/actions/DefaultActions.h"

#include <QStringList>

namespace binding
{

namespace
{

constexpr const char *BuiltIn[ButtonCount] = {"LeftKey_3",  "RightKey_3", "MidKey",     "BackKey_2",
                                              "ForWardKey", "VolumeUp_8", "VolumeUp_9", "VolumeUp_10",
                                              "DPI_2",      "DPI_2",      "DPI_6",      "DPI_5"};

bool hasKeyParam(int button) { return button >= 0 && button < CatalogueButtons; }

} // namespace

const ActionRow *builtInAction(int button)
{
    if (button < 0 || button >= ButtonCount)
        return nullptr;
    return actionOf(QString::fromLatin1(BuiltIn[button]));
}

DefaultAction defaultAction(int button, const QStringList &keyParam)
{
    if (!hasKeyParam(button) || keyParam.value(0) != QLatin1String("0x05"))
        return {builtInAction(button), QString()};
    switch (keyParam.size()) {
    case 3:
        return {mediaAction(mediaCode(uint16_t(keyParam.at(2).toUInt(nullptr, 16)))), QString()};
    case 4:
        return {combinationAction(), keyParam.at(3)};
    default:
        return {};
    }
}

QString keyParamName(int button)
{
    return hasKeyParam(button) ? QStringLiteral("KeyParam%1").arg(button + 1) : QString();
}

} // namespace binding
