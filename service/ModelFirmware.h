// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The firmware of one model: its files by target. Any thread.
#pragma once

#include <QByteArray>
#include <QString>

struct ModelFirmware {
    int cid = 0;
    int mid = 0;
    int connectionKind = 0; // of its receiver

    // The catalogue's name of the target's firmware; empty for a model that is not in it.
    QString baseName(int target) const;
    // The file for the target that differs from the version; for an empty one any file. Empty without one.
    QByteArray find(int target, const QString &version) const;
    QByteArray findForRepair(int target) const;
};
