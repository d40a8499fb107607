// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The notices that say one thing and take at most one answer.
#pragma once

#include "presentation/NoticeDialog.h"

// The mouse does not answer. Closes by itself when it does again. OffLineKind chooses the text.
class MouseOffLine : public NoticeDialog
{
    Q_OBJECT

public:
    MouseOffLine();

protected:
    const char *textKey() const override;
};

// Two devices that cannot be told apart are attached.
class QuestiondialogB : public NoticeDialog
{
    Q_OBJECT

public:
    QuestiondialogB();
};

// Asks before a factory reset.
class ContainReset : public NoticeDialog
{
    Q_OBJECT

public:
    ContainReset();
    bool confirmed() const { return answer; }

    void on_OK_clicked() override;
    void on_Cancel_clicked() override;
    void on_CloseButton_clicked() override;

private:
    bool answer = false;
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
