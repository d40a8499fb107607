// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/actions/BindingEncoder.h"

#include "catalogue/DpiCodes.h"
#include "keys/KeyVocabulary.h"

#include <QStringList>

namespace binding
{

namespace
{

constexpr int KeysOfSequence = KeySequenceEventCount / 2; // each takes a press and a release

constexpr KeyBinding SequenceBinding = {SequenceClass, 0, 0};

uint8_t within(int low, int value, int high) { return uint8_t(qBound(low, value, high)); }

} // namespace

std::optional<EncodedAction> encodeAction(const ActionRow &row, const SensorCodes &sensor)
{
    switch (row.form) {
    case Form::Class:
    case Form::ClassFirst:
    case Form::Fire:
        return EncodedAction{row.binding, std::nullopt};
    case Form::Media:
        return encodeMedia(row.value);
    case Form::Lock:
        return EncodedAction{{DpiLock, uint8_t(DpiToCodeSimple(row.value, sensor)), 0}, std::nullopt};
    case Form::Combination:
    case Form::Opener:
        break;
    }
    return std::nullopt;
}

EncodedAction encodeMedia(uint16_t usage)
{
    KeySequence sequence{};
    sequence.Count.set(2);
    for (uint8_t direction : {0, 1}) {
        KeyEvent &event = sequence.Events[direction];
        event.Direction = direction;
        event.Kind = uint8_t(KeyKind::Consumer);
        event.Code.set(usage);
        event.DelayMs.set(KeyDelayMs);
    }
    return {SequenceBinding, sequence};
}

EncodedAction encodeFireKey(int interval, int count)
{
    return {
        {FireKeyClass, within(FireIntervalMin, interval, FireIntervalMax), within(0, count, FireCountMax)},
        std::nullopt};
}

EncodedAction encodeCombination(const QString &keys) { return {SequenceBinding, BuildKeySequence(keys)}; }

KeySequence BuildKeySequence(const QString &keys)
{
    KeySequence sequence{};
    const QStringList names = keys.split(QLatin1Char('+')).mid(0, KeysOfSequence);
    for (int i = 0; i < names.size(); ++i)
        ComboKeyToEvents(names.at(i), i, names.size(), sequence);
    sequence.Count.set(uint32_t(2 * names.size()));
    return sequence;
}

KeyBinding macroBinding(int button, uint8_t cycle) { return {MacroClass, uint8_t(button), cycle}; }

} // namespace binding
