// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpdateFailRecord: the stored value UpdateFailInfo, which names the target of an upgrade that has begun and
// not succeeded. It survives a restart, and the program then offers a repair. There is one for each device
// that waits for its repair: the one named last is UpdateFailInfo, the others stand in UpdateFailWaiting and
// take its place one after the other. Any thread.
#pragma once

#include <QStringList>
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
    // A mouse is the same one with each of its receivers; a receiver of another class is another device.
    bool isSameDevice(const UpdateFailRecord &other) const;

    // Each returns when the file holds the change; false when it could not be written.
    bool putFirst() const; // before the first erase
    // After a putFirst() for nothing: its device has the record again that it had `before`, if any. What has
    // changed since for other devices stays.
    bool putBack(const QStringList &before) const;
    bool takeAway() const; // after the verified success
    static bool takeAway(const QString &text);

    static QString storedText();            // UpdateFailInfo
    static QStringList storedTexts();       // it and those that wait
    static bool store(const QString &text); // instead of all of them
    static bool storeTexts(const QStringList &texts);
    static void remove(); // all of them

private:
    bool isOfSameDevice(const QString &text) const;
};
