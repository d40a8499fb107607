// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Notices.h"

#include "app/environment/DataRoot.h"
#include "app/hub/PostMsg.h"
#include "catalogue/config/LanguageChoice.h"
#include "catalogue/config/UserStore.h"
#include "device/DeviceState.h"
#include "device/ImageFile.h"

namespace
{

constexpr NoticeKind OffLineKindRow = {"MouseOffLineA",        language::Section::infoTips,
                                       "DialogOffline",        "   The mouse is offline. Please move first",
                                       NoticeButtons::Confirm, "Warn.png"};
constexpr NoticeKind DuplicateRow = {"QuestiondialogBA",   language::Section::home,
                                     "ErrorDevice",        "Do not insert multiple identical devices",
                                     NoticeButtons::Close, "Warn.png"};
constexpr NoticeKind ResetRow = {"ContainResetA",         language::Section::Settings,
                                 "DialogRestore",         " Is need to restore the default settings",
                                 NoticeButtons::Question, "Warn.png"};
constexpr NoticeKind ImportRow = {"InportFailA",          language::Section::key,
                                  "DialogConfigError",    "Config does not match the device",
                                  NoticeButtons::Confirm, "Warn.png"};
constexpr NoticeKind RunningRow = {"ExeIsRunA",      language::Section::home, "OnRun",
                                   "Confirm Delete", NoticeButtons::Confirm,  "Warn.png"};

} // namespace

MouseOffLine::MouseOffLine() : NoticeDialog(OffLineKindRow)
{
    connect(PostMsg::instance(), SIGNAL(SigCloseOffOnline()), this, SLOT(on_CloseButton_clicked()));
    SlotAllLanguage(storedLanguage(UserStore::instance()));
}

const char *MouseOffLine::textKey() const { return OffLineKind == 1 ? "TimeOut" : "DialogOffline"; }

QuestiondialogB::QuestiondialogB() : NoticeDialog(DuplicateRow) {}

ContainReset::ContainReset() : NoticeDialog(ResetRow) {}

void ContainReset::on_OK_clicked()
{
    answer = true;
    close();
}

void ContainReset::on_Cancel_clicked()
{
    answer = false;
    close();
}

void ContainReset::on_CloseButton_clicked() { on_Cancel_clicked(); }

InportFail::InportFail() : NoticeDialog(ImportRow) { SlotAllLanguage(storedLanguage(UserStore::instance())); }

const char *InportFail::textKey() const
{
    return ImportResult == ImageMismatch ? "DialogEConfigMismatch" : "DialogConfigError";
}

ExeIsRun::ExeIsRun() : NoticeDialog(RunningRow)
{
    connect(PostMsg::instance(), SIGNAL(SigChangeLanguage(int)), this, SLOT(SlotChangeLanguage(int)));
    SlotChangeLanguage(storedLanguage(UserStore::instance()));
}

void ExeIsRun::SlotChangeLanguage(int index)
{
    const language::LanguageFile file =
        language::readLanguageFile(applicationFolder() + language::noticeLanguageFile(index));
    setTexts(file.section(language::Word::Mouse, language::Section::home).value(QStringLiteral("OnRun")),
             file.section(language::Word::Mouse, language::Section::common).value(QStringLiteral("OK")), {});
}
