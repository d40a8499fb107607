// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The notices that say one thing and take at most one answer. A notice that only differs in what it says is
// its row; a class body stands where there is more.
#pragma once

#include "presentation/NoticeDialog.h"

namespace notice
{

using language::Section;

inline constexpr NoticeKind OffLine = {"MouseOffLineA",        Section::infoTips,
                                       "DialogOffline",        "   The mouse is offline. Please move first",
                                       NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Duplicate = {"QuestiondialogBA",   Section::home,
                                         "ErrorDevice",        "Do not insert multiple identical devices",
                                         NoticeButtons::Close, "Warn.png"};
inline constexpr NoticeKind LeftButton = {"LeftButtonOnlyA",    Section::key, "DialogKeepLeftKey", "",
                                          NoticeButtons::Close, "Warn.png"};
inline constexpr NoticeKind NoMacro = {
    "MakeMacroA",           Section::home, "MakeMaro", "Please create a macro first",
    NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind SameName = {"SameMacroA",           Section::macro,
                                        "DialogSameMacroName",  "Already have a same name macro",
                                        NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind ThreeKeys = {"GroupMaxThreeA",       Section::home, "MaxThree", "",
                                         NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind MacroLength = {"KeyNumberLimitA",      Section::macro, "DialogMaxMacroKey", "",
                                           NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Debounce = {"LessThreeA",           Section::key,
                                        "DialogDebounceTips",   "Please wait, we are updating the setting",
                                        NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Firmware = {"UpDateWarningA", Section::home,          "",
                                        "Confirm Delete", NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Delete = {"DeleteConfirmA", Section::macro,         "DialogDeleteMacro",
                                      "Confirm Delete", NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Reset = {"ContainResetA",         Section::Settings,
                                     "DialogRestore",         " Is need to restore the default settings",
                                     NoticeButtons::Question, "Warn.png"};
inline constexpr NoticeKind Pairing = {
    "RePairA", Section::home, "Repair", "        Do you need to pair again", NoticeButtons::Question,
    "Warn.png"};
inline constexpr NoticeKind Import = {"InportFailA",          Section::key,
                                      "DialogConfigError",    "Config does not match the device",
                                      NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind Running = {"ExeIsRunA",      Section::home,          "OnRun",
                                       "Confirm Delete", NoticeButtons::Confirm, "Warn.png"};
inline constexpr NoticeKind MacroName = {
    "QuestionDialogA", Section::macro, "DialogSelectMacroFirst", "", NoticeButtons::Question, "Warn.png"};

} // namespace notice

// Says what its row says.
template <const NoticeKind &Row> class PlainNotice : public NoticeDialog
{
public:
    PlainNotice() : NoticeDialog(Row) {}
};

// Keeps its answer: yes by NewHong or OK alone.
template <const NoticeKind &Row> class Confirmation : public NoticeDialog
{
public:
    Confirmation() : NoticeDialog(Row) {}
    bool confirmed() const { return answer_; }

    void on_NewHong_clicked() override { end(true); }
    void on_OK_clicked() override { end(true); }
    void on_Cancel_clicked() override { end(false); }
    void on_CloseButton_clicked() override { end(false); }

private:
    void end(bool yes)
    {
        answer_ = yes;
        close();
    }

    bool answer_ = false;
};

using QuestiondialogB = PlainNotice<notice::Duplicate>; // two devices that cannot be told apart
using LeftButtonOnly = PlainNotice<notice::LeftButton>; // one button must stay the left one
using MakeMacro = PlainNotice<notice::NoMacro>;         // there is no macro to bind
using SameMacro = PlainNotice<notice::SameName>;
using GroupMaxThree = PlainNotice<notice::ThreeKeys>;    // more keys than a combination holds
using KeyNumberLimit = PlainNotice<notice::MacroLength>; // more events than a macro holds
using LessThree = PlainNotice<notice::Debounce>;         // a short debounce makes double clicks
using UpDateWarning = PlainNotice<notice::Firmware>;     // says what setText() gives
using DeleteConfirm = Confirmation<notice::Delete>;
using ContainReset = Confirmation<notice::Reset>; // before a factory reset
using RePair = Confirmation<notice::Pairing>;     // before a pairing that nobody asked for

// The mouse does not answer. Closes by itself when it does again. OffLineKind chooses the text.
class MouseOffLine : public NoticeDialog
{
    Q_OBJECT

public:
    MouseOffLine();

protected:
    const char *textKey() const override;
};

// An image file was not taken. ImportResult chooses the text.
class InportFail : public NoticeDialog
{
    Q_OBJECT

public:
    InportFail();

protected:
    const char *textKey() const override;
};

// Another copy of the program runs. No tables are loaded yet, so it reads its texts by itself.
class ExeIsRun : public NoticeDialog
{
    Q_OBJECT

public:
    ExeIsRun();

public slots:
    void SlotChangeLanguage(int index);
};
