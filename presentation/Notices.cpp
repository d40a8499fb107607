// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Notices.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/ImageFile.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"

MouseOffLine::MouseOffLine() : NoticeDialog(notice::OffLine)
{
    connect(PostMsg::instance(), SIGNAL(SigCloseOffOnline()), this, SLOT(on_CloseButton_clicked()));
    SlotAllLanguage(storedLanguage(UserStore::instance()));
}

const char *MouseOffLine::textKey() const { return OffLineKind == 1 ? "TimeOut" : "DialogOffline"; }

InportFail::InportFail() : NoticeDialog(notice::Import)
{
    SlotAllLanguage(storedLanguage(UserStore::instance()));
}

const char *InportFail::textKey() const
{
    return ImportResult == ImageMismatch ? "DialogEConfigMismatch" : "DialogConfigError";
}

ExeIsRun::ExeIsRun() : NoticeDialog(notice::Running)
{
    connect(PostMsg::instance(), SIGNAL(SigChangeLanguage(int)), this, SLOT(SlotChangeLanguage(int)));
    SlotChangeLanguage(storedLanguage(UserStore::instance()));
}

void ExeIsRun::SlotChangeLanguage(int index)
{
    QString told, confirm;
    for (const int each : {index, 0}) { // a text that the language does not have is that of the first one
        const language::LanguageFile file =
            language::readLanguageFile(applicationFolder() + language::noticeLanguageFile(each));
        const auto fill = [&file](QString &text, language::Section section, const char *key) {
            if (text.isEmpty())
                text = file.section(language::Word::Mouse, section).value(QLatin1String(key));
        };
        fill(told, language::Section::home, "OnRun");
        fill(confirm, language::Section::common, "OK");
    }
    setTexts(told, confirm, {});
}

namespace notice
{
namespace
{

QList<ScriptedAnswer *> &script()
{
    static QList<ScriptedAnswer *> answers; // oldest first
    return answers;
}

} // namespace

ScriptedAnswer::ScriptedAnswer(const NoticeKind &kind, bool confirmed) : kind_(kind), confirmed_(confirmed)
{
    script() << this;
}

ScriptedAnswer::~ScriptedAnswer() { script().removeOne(this); }

std::optional<bool> ScriptedAnswer::take(const NoticeKind &kind, const QString &text)
{
    for (ScriptedAnswer *each : qAsConst(script())) {
        if (each->taken_ || &each->kind_ != &kind)
            continue;
        each->taken_ = true;
        each->text_ = text;
        return each->confirmed_;
    }
    return std::nullopt;
}

} // namespace notice
