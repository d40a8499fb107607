// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpdateFailRecord: the stored value UpdateFailInfo, which names the target of an upgrade that has begun and
// not succeeded. It survives a restart, and the program then offers a repair. Any thread.
#pragma once

#include <QString>
#include <optional>

struct UpdateFailRecord {
    int target = 0;         // TargetMouse or TargetReceiver
    int connectionKind = 0; // of the receiver: 1, 2, 4 or 8
    int cid = 0;
    int mid = 0;

    // Empty when the text has other than four fields or one is no number.
    static std::optional<UpdateFailRecord> parse(const QString &text);
    QString text() const; // "210,8,18,6"
    // False for another target, another class, or ids that no model of the catalogue has.
    bool makesSense() const;

    static QString storedText();
    // Returns when the file holds it; false when it could not be written.
    static bool store(const QString &text);
    static void remove();
};
