// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "keys/KeyVocabulary.h"

#include <algorithm>

namespace
{

MouseButtonTexts mouseNames;

constexpr uint8_t KeypadEnter = 0x58;
constexpr uint8_t Enter = 0x28;
constexpr uint32_t ComboDelayMs = 10;
// Devices in use hold this wrong release code of the key "F", so it is still written.
constexpr uint8_t ComboF = 0x09;
constexpr uint8_t ComboFRelease = 0x29;

// How a device's code that a modifier and a key share is read, by its kind.
enum class Reading : uint8_t { Key, Modifier, Nothing };
struct SharedCode {
    uint8_t code;
    Reading modifier, key, other; // by kind
};
constexpr SharedCode SharedCodes[] = {
    {0x01, Reading::Modifier, Reading::Modifier, Reading::Modifier},
    {0x02, Reading::Modifier, Reading::Modifier, Reading::Modifier},
    {0x04, Reading::Modifier, Reading::Key, Reading::Nothing},
    {0x08, Reading::Modifier, Reading::Key, Reading::Nothing},
    {0x10, Reading::Modifier, Reading::Key, Reading::Nothing},
    {0x20, Reading::Modifier, Reading::Key, Reading::Nothing},
    {0x40, Reading::Modifier, Reading::Key, Reading::Key},
    {0x80, Reading::Modifier, Reading::Modifier, Reading::Modifier},
};
// Combinations never name the right Ctrl.
constexpr uint8_t ComboWithoutModifier = 0x10;

Reading readingOf(int code, int kind)
{
    for (const SharedCode &row : SharedCodes) {
        if (row.code != code)
            continue;
        return kind == int(KeyKind::Modifier)   ? row.modifier
               : kind == int(KeyKind::Keyboard) ? row.key
                                                : row.other;
    }
    return Reading::Key;
}

template <typename Test> const KeyRow *find(Test test)
{
    const auto *row = std::find_if(KeyTable.begin(), KeyTable.end(), test);
    return row != KeyTable.end() ? &*row : nullptr;
}

const KeyRow *rowOf(int code, KeyKind kind)
{
    return find([=](const KeyRow &row) { return row.kind == kind && row.code == code; });
}

const KeyRow *rowOf(const QString &name)
{
    return find([&](const KeyRow &row) { return name == QString::fromUtf8(row.name); });
}

const KeyRow *rowOfVirtualKey(int virtualKey)
{
    return find([=](const KeyRow &row) { return row.virtualKey == virtualKey; });
}

QString nameOf(const KeyRow *row) { return row ? QString::fromUtf8(row->name) : QString(); }

// A modifier's name without its side.
QString shortName(const KeyRow *modifier) { return nameOf(modifier).mid(1); }

const KeyRow *rowOfComboName(const QString &name)
{
    const KeyRow *left = rowOf(QLatin1Char('L') + name);
    if (left && left->kind == KeyKind::Modifier)
        return left;
    const KeyRow *row = rowOf(name);
    return row && row->kind == KeyKind::Keyboard ? row : nullptr;
}

QString codeText(int code)
{
    return QStringLiteral("0x") + QString::number(code, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

struct NamedCode {
    KeyKind kind;
    uint8_t code;
};

std::optional<NamedCode> codeOf(const QString &name)
{
    if (const KeyRow *row = rowOf(name))
        return NamedCode{row->kind, row->code};
    for (std::size_t i = 0; i < MouseButtonCount; ++i)
        if (mouseNames[i] == name)
            return NamedCode{KeyKind::MouseButton, MouseButtonTable[i].bit};
    return std::nullopt;
}

void writeComboEvent(int index, uint8_t direction, const KeyRow *row, KeySequence &block)
{
    if (index < 0 || index >= KeySequenceEventCount)
        return;
    KeyEvent &event = block.Events[index];
    event.Direction = direction;
    event.Kind = uint8_t(row ? row->kind : KeyKind::Keyboard);
    event.DelayMs.set(ComboDelayMs);
    if (!row)
        return;
    const bool oddRelease = direction == 1 && row->kind == KeyKind::Keyboard && row->code == ComboF;
    event.Code.set(oddRelease ? ComboFRelease : row->code);
}

} // namespace

void SetMouseButtonNames(const MouseButtonTexts &names) { mouseNames = names; }

const MouseButtonTexts &MouseButtonNames() { return mouseNames; }

std::optional<QString> KeyNameFromVirtualKey(int virtualKey)
{
    const KeyRow *row = rowOfVirtualKey(virtualKey);
    return row ? std::optional<QString>(nameOf(row)) : std::nullopt;
}

QString GroupKeyNameFromVirtualKey(int virtualKey)
{
    const KeyRow *row = rowOfVirtualKey(virtualKey);
    return row && row->kind == KeyKind::Keyboard ? nameOf(row) : QString();
}

QString KeyNameFromCodeText(const QString &text, int kind)
{
    if (kind == int(KeyKind::MouseButton)) {
        for (std::size_t i = 0; i < MouseButtonCount; ++i)
            if (text == codeText(MouseButtonTable[i].bit))
                return mouseNames[i];
        return {};
    }
    return nameOf(
        find([&](const KeyRow &row) { return int(row.kind) == kind && text == codeText(row.code); }));
}

QString KeyNameFromCode(int code, int kind)
{
    if (code == KeypadEnter)
        return nameOf(rowOf(Enter, KeyKind::Keyboard));
    const Reading reading = readingOf(code, kind);
    if (reading == Reading::Nothing)
        return {};
    return nameOf(rowOf(code, reading == Reading::Modifier ? KeyKind::Modifier : KeyKind::Keyboard));
}

QString MouseNameFromBit(int bit)
{
    for (std::size_t i = 0; i < MouseButtonCount; ++i)
        if (MouseButtonTable[i].bit == bit)
            return mouseNames[i];
    return {};
}

QString ComboNameFromCode(int code, int kind)
{
    if (code == ComboWithoutModifier)
        return nameOf(rowOf(code, KeyKind::Keyboard));
    if (readingOf(code, kind) == Reading::Modifier)
        return shortName(rowOf(code, KeyKind::Modifier));
    return KeyNameFromCode(code, kind);
}

QStringList KeyNameToCodeText(const QString &name)
{
    const std::optional<NamedCode> found = codeOf(name);
    if (!found)
        return {};
    return {codeText(found->code), QString::number(int(found->kind))};
}

void KeyNameToEvent(const QString &name, int index, MacroBlock &block)
{
    if (index < 0 || index >= MacroEventCount)
        return;
    const std::optional<NamedCode> found = codeOf(name);
    block.Events[index].Kind = uint8_t(found ? found->kind : KeyKind::Keyboard);
    if (found)
        block.Events[index].Code.set(found->code);
}

void ComboKeyToEvents(const QString &name, int position, int count, KeySequence &block)
{
    const KeyRow *row = rowOfComboName(name);
    writeComboEvent(position, 0, row, block);
    writeComboEvent(2 * count - 1 - position, 1, row, block);
}
