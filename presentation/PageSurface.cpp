// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/PageSurface.h"

#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"

#include <QFrame>
#include <QVariant>

PageSurface::PageSurface(const QString &name, const QString &pictures, const char *nameKey, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(name);
    setProperty("nameKey", QString::fromLatin1(nameKey));
    resize(DevicePageSize);
    auto *surface = new QFrame(this);
    surface->setObjectName(QStringLiteral("frame") + name);
    surface->resize(DevicePageSize);
    onFirstShow(this, [surface, pictures] {
        surface->setStyleSheet(
            style::dialogBackground(style::pictureFolder(pictures), surface->objectName()));
    });
}
