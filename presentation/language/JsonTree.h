// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// JSON that keeps what a language file needs and QJsonObject loses: the order of the members, and members
// of one name side by side.
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

// Nothing when the bytes are no JSON in UTF-8, or objects and arrays lie more than `maxDepth` deep.
std::optional<JsonValue> parseJson(const QByteArray &json, int maxDepth);
