// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Whether this user may open the node of a device, and if not, what is missing and which command adds it. The
// layer lists a node without permission like any other, and its device would seem not to answer. Any thread;
// no function opens a node.
#pragma once

#include <QString>
#include <QStringList>

// The rules by which udev opens the devices of the catalogue to the user, as they are installed.
constexpr char RulesFileName[] = "70-morlen.rules";

// True when the node exists and this user may not read and write it. Paths outside /dev/ are no nodes.
bool isRefused(const QString &path);

enum class PermissionLack : uint8_t {
    NoRules,     // udev has no rules for the devices
    OldRules,    // rules of another version of the program, which may lack the device
    NotInEffect, // the rules were installed after the node was made
    NotInGroup,  // the node belongs to a group that this user is not in
};

struct NodeRemedy {
    PermissionLack lack;
    QString subject; // the rules file that is missing or installed, or the group
    QString command; // for a shell, one line
};
NodeRemedy nodeRemedy(const QString &path);

// Replace the kernel's answer and udev's folders, for tests; null and an empty list restore them. To be
// called before a search begins.
using NodeProbe = bool (*)(const QString &path);
void setNodeProbe(NodeProbe probe);
void setRulesFolders(const QStringList &folders);
