// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The models of the catalogue by their index, counted from 0, and its general values. A model's section is
// "Drive" + (index + 1); the index `total()` stands for a device that no section describes. Numbers are
// decimal; malformed and missing ones are 0. Any thread.
#pragma once

#include "catalogue/ConfigReader.h"

class DeviceCatalogue
{
public:
    explicit DeviceCatalogue(const ConfigReader &reader = ConfigReader::instance()) : reader_(reader) {}

    // Clamped to 255, since a model id is one byte.
    int total() const;
    static QString section(int driveIndex);
    // The first model with these ids, or total().
    int find(int cid, int mid) const;

    QString text(int driveIndex, const char *key) const;
    QStringList list(int driveIndex, const char *key) const;
    int number(int driveIndex, const char *key) const;

    QStringList optionList(const char *key) const;
    QString optionText(const char *key) const;
    int option(const char *key) const;
    // "r,g,b" for a style sheet; a light grey when the list has not three numbers of 0..255.
    QString colour(const char *key) const;

private:
    const ConfigReader &reader_;
};
