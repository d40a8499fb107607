// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A data folder of the test's own with its folder of macros, and macros to fill it with.
#pragma once

#include "environment/DataRoot.h"
#include "keys/KeyVocabulary.h"
#include "macro/store/MacroFolder.h"
#include "macro/store/MacroRow.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <random>

class MacroHome
{
public:
    MacroHome()
    {
        qputenv("XDG_DATA_HOME", home_.path().toLocal8Bit());
        makeDataFolders();
        SetMouseButtonNames({"Left", "Right", "Middle", "Back", "Forward"});
    }
    void clear() const
    {
        for (const QString &folder : {macro::macroFolder(), macro::keptFolder()})
            QDir(folder).removeRecursively();
        makeDataFolders();
    }
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile::remove(path);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file");
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

private:
    QTemporaryDir home_;
};

// Random loops run so often; MACRO_ROUNDS=10000 takes them all.
inline int rounds(int few)
{
    const int asked = qEnvironmentVariableIntValue("MACRO_ROUNDS");
    return asked > 0 ? asked : few;
}

// An alternating list of any keys of the vocabulary, which ends in an event.
inline macro::MacroRows anyRows(std::mt19937 &random, int most = MacroEventCount)
{
    macro::MacroRows rows;
    const int events = int(random() % uint32_t(most + 1));
    for (int i = 0; i < events; ++i) {
        const std::size_t key = random() % (KeyTable.size() + MouseButtonCount);
        const QString name = key < KeyTable.size() ? QString::fromUtf8(KeyTable[key].name)
                                                   : MouseButtonNames()[key - KeyTable.size()];
        rows << macro::keyRow(name, random() % 2 == 0);
        if (i + 1 < events)
            rows << macro::delayRow(random() % 65536);
    }
    return rows;
}
