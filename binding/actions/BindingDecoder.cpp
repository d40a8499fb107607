// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/actions/BindingDecoder.h"

#include "catalogue/DpiCodes.h"
#include "keys/KeyVocabulary.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/language/LanguageTables.h"

#include <QStringList>

namespace binding
{

namespace
{

DecodedBinding onPanel(Panel panel, const ActionRow *detail = nullptr)
{
    return {std::nullopt, panel, openerOf(panel), detail};
}

bool isPlain(Form form) { return form == Form::Class || form == Form::ClassFirst || form == Form::Fire; }

bool matches(const ActionRow &row, const KeyBinding &binding)
{
    return row.form != Form::ClassFirst || row.binding.First == binding.First;
}

// Decodes the classes that need only the three bytes of the binding. A known class with an unknown first
// parameter still gives its panel; an unknown class gives nothing.
DecodedBinding decodePlain(const KeyBinding &binding, int language)
{
    DecodedBinding decoded;
    for (const ActionRow &row : ActionRows) {
        if (!isPlain(row.form) || row.binding.Class != binding.Class)
            continue;
        decoded.panel = row.shows;
        decoded.function = openerOf(row.shows);
        if (!matches(row, binding))
            continue;
        (row.place == Panel::Functions ? decoded.function : decoded.detail) = &row;
        decoded.caption = actionText(row, language);
        break;
    }
    return decoded;
}

DecodedBinding decodeSequence(const KeySequence &sequence, int language)
{
    const KeyEvent &first = sequence.Events[0];
    if (first.Kind == uint8_t(KeyKind::Consumer)) {
        DecodedBinding decoded = onPanel(Panel::Media, mediaAction(mediaCode(first.Code.get())));
        if (decoded.detail)
            decoded.caption = actionText(*decoded.detail, language);
        return decoded;
    }
    return {combinationText(sequence), Panel::Debounce, combinationAction(), nullptr};
}

DecodedBinding decodeMacro(const MacroBlock &block, int language)
{
    DecodedBinding decoded = onPanel(Panel::Macros);
    decoded.caption = macroCaption(macro::blockName(block), language);
    return decoded;
}

DecodedBinding decodeLock(uint8_t code, const SensorCodes &sensor, int language)
{
    const int dpi = CodeToDpiSimple(code, sensor);
    DecodedBinding decoded = onPanel(Panel::DpiLocks, lockAction(dpi));
    decoded.caption = actionText(*decoded.function, language) + QLatin1Char('-') + QString::number(dpi);
    return decoded;
}

} // namespace

SlotView slotOf(const FlashDataMap &record, int button)
{
    return {record.KeyBindings[button], record.KeySequences[button], record.MacroBlocks[button]};
}

DecodedBinding decodeBinding(const SlotView &slot, const SensorCodes &sensor, int language)
{
    switch (slot.binding.Class) {
    case SequenceClass:
        return decodeSequence(slot.sequence, language);
    case MacroClass:
        return decodeMacro(slot.macro, language);
    case DpiLock:
        return decodeLock(slot.binding.First, sensor, language);
    default:
        return decodePlain(slot.binding, language);
    }
}

QString combinationText(const KeySequence &sequence)
{
    const int keys = qMin(sequence.Count.bytes[0] / 2, KeySequenceEventCount);
    QStringList names;
    for (int i = 0; i < keys; ++i)
        names << ComboNameFromCode(sequence.Events[i].Code.get(), sequence.Events[i].Kind);
    return names.join(QLatin1Char('+'));
}

QString macroCaption(const QString &name, int language)
{
    return language::text(language::Section::macro, "MacroSeond", language) + name;
}

} // namespace binding
