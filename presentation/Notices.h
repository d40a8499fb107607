// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The notices: one text, at most one answer. A notice that only differs in its text is a row; one with more
// has a class body. A page opens a notice and gets its answer by ask<Notice>(). Main thread.
#pragma once

#include "presentation/NoticeDialog.h"

#include <optional>

namespace notice
{

using language::Section;

// clang-format off
inline constexpr NoticeKind OffLine = {"MouseOffLineA", Section::infoTips, "DialogOffline", "   The mouse is offline. Please move first", NoticeButtons::Confirm};
inline constexpr NoticeKind Duplicate = {"QuestiondialogBA", Section::home, "ErrorDevice", "Do not insert multiple identical devices", NoticeButtons::Close};
inline constexpr NoticeKind LeftButton = {"LeftButtonOnlyA", Section::key, "DialogKeepLeftKey", "", NoticeButtons::Close, NoticeSign::Information};
inline constexpr NoticeKind NoMacro = {"MakeMacroA", Section::home, "MakeMaro", "Please create a macro first", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind SameName = {"SameMacroA", Section::macro, "DialogSameMacroName", "Already have a same name macro", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind ThreeKeys = {"GroupMaxThreeA", Section::home, "MaxThree", "", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind MacroLength = {"KeyNumberLimitA", Section::macro, "DialogMaxMacroKey", "", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind Debounce = {"LessThreeA", Section::key, "DialogDebounceTips", "Please wait, we are updating the setting", NoticeButtons::Confirm};
inline constexpr NoticeKind Firmware = {"UpDateWarningA", Section::home, "", "Confirm Delete", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind Delete = {"DeleteConfirmA", Section::macro, "DialogDeleteMacro", "Confirm Delete", NoticeButtons::Confirm, NoticeSign::Question, NoticeOutcome::Destroys};
inline constexpr NoticeKind Reset = {"ContainResetA", Section::Settings, "DialogRestore", " Is need to restore the default settings", NoticeButtons::Question, NoticeSign::Question, NoticeOutcome::Destroys};
inline constexpr NoticeKind Pairing = {"RePairA", Section::home, "Repair", "        Do you need to pair again", NoticeButtons::Question, NoticeSign::Question};
inline constexpr NoticeKind Import = {"InportFailA", Section::key, "DialogConfigError", "Config does not match the device", NoticeButtons::Confirm};
inline constexpr NoticeKind Running = {"ExeIsRunA", Section::home, "OnRun", "Confirm Delete", NoticeButtons::Confirm, NoticeSign::Information};
inline constexpr NoticeKind MacroName = {"QuestionDialogA", Section::macro, "DialogSelectMacroFirst", "", NoticeButtons::Question};
// clang-format on

} // namespace notice

// A notice that only differs in its row.
template <const NoticeKind &Row> class PlainNotice : public NoticeDialog
{
public:
    static constexpr const NoticeKind &Kind = Row;
    PlainNotice() : NoticeDialog(Row) {}
};

using QuestiondialogB = PlainNotice<notice::Duplicate>; // two devices that cannot be told apart
using LeftButtonOnly = PlainNotice<notice::LeftButton>; // one button must stay the left one
using MakeMacro = PlainNotice<notice::NoMacro>;         // there is no macro to bind
using SameMacro = PlainNotice<notice::SameName>;
using GroupMaxThree = PlainNotice<notice::ThreeKeys>;    // more keys than a combination holds
using KeyNumberLimit = PlainNotice<notice::MacroLength>; // more events than a macro holds
using LessThree = PlainNotice<notice::Debounce>;         // a short debounce makes double clicks
using UpDateWarning = PlainNotice<notice::Firmware>;     // with the caller's text
using DeleteConfirm = PlainNotice<notice::Delete>;
using ContainReset = PlainNotice<notice::Reset>; // before a factory reset
using RePair = PlainNotice<notice::Pairing>;     // before a pairing that the program offers

// The mouse does not answer. Closes itself when the mouse answers again. OffLineKind selects the text.
class MouseOffLine : public NoticeDialog
{
    Q_OBJECT

public:
    static constexpr const NoticeKind &Kind = notice::OffLine;
    MouseOffLine();

protected:
    const char *textKey() const override;
};

// An image file was refused. ImportResult selects the text.
class InportFail : public NoticeDialog
{
    Q_OBJECT

public:
    static constexpr const NoticeKind &Kind = notice::Import;
    InportFail();

protected:
    const char *textKey() const override;
};

// Another copy of the program runs. It reads its own texts, because no language tables are loaded yet.
class ExeIsRun : public NoticeDialog
{
    Q_OBJECT

public:
    static constexpr const NoticeKind &Kind = notice::Running;
    ExeIsRun();

public slots:
    void SlotChangeLanguage(int index);
};

namespace notice
{

// Answers the next notice of one kind, which then does not open. For tests: no timer and no window needed.
// The object's end removes an unused answer. Main thread.
class ScriptedAnswer
{
public:
    ScriptedAnswer(const NoticeKind &kind, bool confirmed);
    ~ScriptedAnswer();
    ScriptedAnswer(const ScriptedAnswer &) = delete;
    ScriptedAnswer &operator=(const ScriptedAnswer &) = delete;

    bool isTaken() const { return taken_; }
    QString text() const { return text_; } // the caller's; empty when the row's text stands

    // Takes the oldest answer to a notice of this kind, if there is one.
    static std::optional<bool> take(const NoticeKind &kind, const QString &text);

private:
    const NoticeKind &kind_;
    const bool confirmed_;
    bool taken_ = false;
    QString text_;
};

template <typename Notice> class NextAnswer : public ScriptedAnswer
{
public:
    explicit NextAnswer(bool confirmed) : ScriptedAnswer(Notice::Kind, confirmed) {}
};

// Runs the notice modally over the middle of `page`, moved by `offset`, or in the middle of the screen
// without a page. `text` replaces the row's text unless empty. Returns whether NewHong or OK ended it.
template <typename Notice>
bool ask(const QWidget *page = nullptr, const QPoint &offset = {}, const QString &text = {})
{
    if (const auto answer = ScriptedAnswer::take(Notice::Kind, text))
        return *answer;
    Notice dialog;
    if (!text.isEmpty())
        dialog.setText(text);
    dialog.openOver(page, offset);
    return dialog.isConfirmed();
}

} // namespace notice
