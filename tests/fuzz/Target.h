// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the fuzz targets share. A target takes any bytes, reads them as the program would, and ends the
// process when what was read breaks a promise of the reader.
#pragma once

#include "keys/KeyVocabulary.h"

#include <QByteArray>
#include <QtGlobal>

#define PROMISE(condition)                                                                                   \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            qFatal("%s:%d: %s", __FILE__, __LINE__, #condition);                                             \
    } while (false)

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size);

inline QByteArray bytesOf(const uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

// The language's names of the mouse buttons, as the page of the macros sets them.
inline void nameMouseButtons()
{
    SetMouseButtonNames({QStringLiteral("Left"), QStringLiteral("Right"), QStringLiteral("Middle"),
                         QStringLiteral("Back"), QStringLiteral("Forward")});
}
