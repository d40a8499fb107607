// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every notice and input dialog, for programs that show them all. Main thread.
#pragma once

#include "device/DeviceState.h"
#include "presentation/Notices.h"
#include "presentation/QuestionDialog.h"
#include "presentation/UpDataParam.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "presentation/dialogs/addKey.h"
#include "presentation/language/LanguageTables.h"

#include <functional>
#include <memory>
#include <vector>

struct NoticeRow {
    const char *name;
    std::function<std::unique_ptr<NoticeWindow>()> make;
};

template <typename Notice> std::unique_ptr<NoticeWindow> madeNotice() { return std::make_unique<Notice>(); }

inline const std::vector<NoticeRow> &everyNotice()
{
    const auto updateWarning = [] {
        auto warning = std::make_unique<UpDateWarning>();
        warning->setText(language::text(language::Section::home, "WiredMode", LanguageIndex));
        return warning;
    };
    // A key dialog and the virtual keys that are pressed in it.
    const auto combination = [] {
        auto dialog = std::make_unique<GroupKey>();
        for (const int key : {0x09, 0x70})
            dialog->UpdateCapslockTip(key, true, false);
        return dialog;
    };
    const auto singleKey = [] {
        auto dialog = std::make_unique<addKey>();
        dialog->UpdateCapslockTip(0xA3, true, false);
        return dialog;
    };
    static const std::vector<NoticeRow> rows = {
        {"MouseOffLine", madeNotice<MouseOffLine>},
        {"QuestiondialogB", madeNotice<QuestiondialogB>},
        {"LeftButtonOnly", madeNotice<LeftButtonOnly>},
        {"MakeMacro", madeNotice<MakeMacro>},
        {"SameMacro", madeNotice<SameMacro>},
        {"GroupMaxThree", madeNotice<GroupMaxThree>},
        {"ContainReset", madeNotice<ContainReset>},
        {"KeyNumberLimit", madeNotice<KeyNumberLimit>},
        {"DeleteConfirm", madeNotice<DeleteConfirm>},
        {"InportFail", madeNotice<InportFail>},
        {"LessThree", madeNotice<LessThree>},
        {"ExeIsRun", madeNotice<ExeIsRun>},
        {"UpDateWarning", updateWarning},
        {"RePair", madeNotice<RePair>},
        {"UpDataParam", madeNotice<UpDataParam>},
        {"QuestionDialog", madeNotice<QuestionDialog>},
        {"GroupKey", combination},
        {"FireKey", madeNotice<FireKey>},
        {"addKey", singleKey},
        {"AddDelayTime", madeNotice<AddDelayTime>},
    };
    return rows;
}
