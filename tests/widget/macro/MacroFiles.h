// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macro files for the tests of the page of macros, a folder that takes none, and what the page tells of them.
#pragma once

#include "tests/widget/macro/MacroPage.h"

namespace macrofiles
{

inline const QByteArray Tap = "1\n0x04 1 0\n10ms\n0x04 1 1\n";
inline const QString TapRows = "+A 10ms -A";
inline const QByteArray Hold = "254\n0x05 1 0\n500ms\n0x05 1 1\n";
inline const QString HoldRows = "+B 500ms -B";

// A folder that takes no file, also from root, and is one again at the end.
class FullDisk
{
public:
    FullDisk()
    {
        QDir().rename(macro::macroFolder(), macro::macroFolder() + ".away");
        MacroHome::write(macro::macroFolder(), "no folder");
    }
    ~FullDisk()
    {
        QFile::remove(macro::macroFolder());
        QDir().rename(macro::macroFolder() + ".away", macro::macroFolder());
    }
};

// The signals of the hub in their order, as "name argument argument".
inline void listen(QStringList &log, QObject *until)
{
    PostMsg *hub = PostMsg::instance();
    QObject::connect(hub, &PostMsg::SigUpDataMacro, until, [&log](const QString &name, int index) {
        log << QString("update %1 %2").arg(name).arg(index);
    });
    QObject::connect(hub, &PostMsg::SigMacroRename, until, [&log](const QString &old, const QString &name) {
        log << QString("rename %1 %2").arg(old, name);
    });
    QObject::connect(hub, &PostMsg::SigDeleteMacroButton, until,
                     [&log](const QString &text) { log << "delete " + text; });
}

} // namespace macrofiles
