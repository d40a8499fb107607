// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Notices.h"

#include "app/hub/PostMsg.h"
#include "catalogue/config/LanguageChoice.h"
#include "catalogue/config/UserStore.h"
#include "device/DeviceState.h"
#include "device/ImageFile.h"

namespace
{

constexpr NoticeKind OffLineKindRow = {"MouseOffLineA",
                                       LanguageSection::infoTips,
                                       "DialogOffline",
                                       "   The mouse is offline. Please move first",
                                       NoticeButtons::Confirm,
                                       "Warn.png"};
constexpr NoticeKind DuplicateRow = {"QuestiondialogBA",
                                     LanguageSection::home,
                                     "ErrorDevice",
                                     "Do not insert multiple identical devices",
                                     NoticeButtons::Close,
                                     "Warn.png"};
constexpr NoticeKind ResetRow = {"ContainResetA",
                                 LanguageSection::Settings,
                                 "DialogRestore",
                                 " Is need to restore the default settings",
                                 NoticeButtons::Question,
                                 "Warn.png"};
constexpr NoticeKind ImportRow = {"InportFailA",
                                  LanguageSection::key,
                                  "DialogConfigError",
                                  "Config does not match the device",
                                  NoticeButtons::Confirm,
                                  "Warn.png"};
constexpr NoticeKind RunningRow = {"ExeIsRunA",      LanguageSection::home,  "OnRun",
                                   "Confirm Delete", NoticeButtons::Confirm, "Warn.png"};

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
