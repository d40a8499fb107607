// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Whether this user may use the node of a device, and if not, what is missing and which command adds it.
// The layer lists a node that it may not open like any other; asked, such a device would only seem silent.
// Any thread; nothing here opens a node.
#pragma once

#include <QString>
#include <QStringList>

// The rules by which udev opens the devices of the catalogue to the user, as they are installed.
constexpr char RulesFileName[] = "70-morlen.rules";

// True when the node is there and keeps this user out. Only what lies below /dev/ is a node.
bool isRefused(const QString &path);

enum class PermissionLack : uint8_t {
    NoRules,     // udev does not know the devices
    OldRules,    // those of another version, which may not know the device
    NotInEffect, // the rules came after the node
    NotInGroup,  // the node belongs to a group that this user is not in
};

struct NodeRemedy {
    PermissionLack lack;
    QString subject; // the rules file that is missing or installed, or the group
    QString command; // for a shell, one line
};
NodeRemedy nodeRemedy(const QString &path);

// Others in the place of the kernel's answer and of udev's folders, for tests; null and an empty list restore
// them. Before a search begins.
using NodeProbe = bool (*)(const QString &path);
void setNodeProbe(NodeProbe probe);
void setRulesFolders(const QStringList &folders);
