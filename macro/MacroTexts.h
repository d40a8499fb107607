// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The texts of the page of macros, and what its list of insertions inserts. Main thread.
#pragma once

#include <QString>
#include <cstdint>

namespace macrotexts
{

// Of the section "macro", or "common" where that has none.
QString text(const char *key, int language);
QString text(const char *key); // in the language in use
// A text with places for numbers and names; `fallback` in a language that has none.
QString form(const char *key, const char *fallback);
QString duration(qint64 milliseconds);

struct TextRow {
    const char *widget;
    const char *key;
};
constexpr TextRow WidgetTexts[] = {
    {"label", "MacroList"},
    {"label_2", "KeyList"},
    {"label_3", "InsertEvent"},
    {"NewHong", "NewMacro"},
    {"DeleteHong", "Delete"},
    {"Amend", "Modify"},
    {"DeleteKey", "Delete"},
    {"StartRecord", "StartRecord"},
    {"StopRecord", "StopRecord"},
    {"AutoInsertDelayLabel", "AutoDelay"},
    {"DefaultDelay", "DefaultDelay"},
    {"ReNumber", "CycleTimes"},
    {"ReUntilLabel", "UntilThisPressed"},
    {"ReUntilLooseLabel", "UntilThisReleased"},
    {"ReUntilClickLabel", "UntilAnyPressed"},
    {"Save", "Save"},
    {"Discard", "DiscardChanges"},
    {"recordTitle", "RecordTitle"},
    {"cycleTitle", "CycleTitle"},
};

enum class Insertion : uint8_t { Nothing, Press, Release, Delay, Click };
struct InsertionRow {
    const char *text;    // without a language
    const char *textKey; // of the choices InsertEventOptions; of a delay, of the section "macro"
    Insertion what;
    uint8_t bit; // of a clicked mouse button
};
constexpr InsertionRow Insertions[] = {
    // by index of ChooseEvent
    {"", nullptr, Insertion::Nothing, 0},     {"按键按下", "0", Insertion::Press, 0},
    {"按键释放", "1", Insertion::Release, 0}, {"延时", "Delay", Insertion::Delay, 0},
    {"左键", "2", Insertion::Click, 1},       {"右键", "3", Insertion::Click, 2},
    {"中键", "4", Insertion::Click, 4},       {"前进键", "5", Insertion::Click, 16},
    {"后退键", "6", Insertion::Click, 8},
};
QString text(const InsertionRow &row, int language);

} // namespace macrotexts
