// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A JSON reader that keeps the order of members and members of equal names, which QJsonObject loses and
// language files need.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

struct JsonMember;

struct JsonValue {
    enum class Kind : uint8_t { Other, Number, Text, Array, Object }; // Other: true, false, null

    Kind kind = Kind::Other;
    QString text;                    // of a text; of a number in decimal
    std::vector<JsonValue> items;    // of an array
    std::vector<JsonMember> members; // of an object, in the file's order

    // The last member of the name, or a value of the kind Other.
    const JsonValue &member(const char *name) const;
};

struct JsonMember {
    QString name;
    JsonValue value;
};

// None for bytes that are not JSON in UTF-8 or nest objects and arrays deeper than `maxDepth`.
std::optional<JsonValue> parseJson(const QByteArray &json, int maxDepth);
