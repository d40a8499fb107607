// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SavesUnderWay: the macros that were saved and are on their way to the mouse's buttons. One may be renamed
// or deleted while its rows wait to be sent, and another save may begin, which ends before this one. Main
// thread.
#pragma once

#include <QStringList>

class SavesUnderWay
{
public:
    // Returns when it is sent, with the macro's present name; empty when it was deleted meanwhile.
    QString send(const QString &name, bool events, bool cycle);
    bool contains(const QString &name) const { return names_.contains(name); }
    void rename(const QString &name, const QString &newName);
    void forget(const QString &name) { rename(name, {}); }

private:
    QStringList names_; // as they are now; a deleted one is empty
};
