// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/GroupKey.h"

#include "keys/KeyVocabulary.h"
#include "presentation/Notices.h"
#include "ui_GroupKey.h"

namespace
{

constexpr qint64 EntryLimitMs = 2000;
constexpr int KeyLimit = 3; // a key sequence holds a press and a release of each
constexpr QLatin1Char Plus('+');

} // namespace

GroupKey::GroupKey()
    : KeyDialog({{"label", language::Section::home, "ComKey"},
                 {"Shift", language::Section::key, "KeyShift"},
                 {"Ctrl", language::Section::key, "KeyCtrl"},
                 {"Alt", language::Section::key, "KeyAlt"},
                 {"Win", language::Section::key, "KeyWin"}})
    , ui(std::make_unique<Ui::GroupKey>())
{
    ui->setupUi(this);
    finishKeyForm();
}

GroupKey::~GroupKey() = default;

void GroupKey::UpdateCapslockTip(int keyCode, bool downOrUp, bool)
{
    if (!downOrUp)
        return;
    beginOrExpire();
    if (keyCode == LastGroupKey_)
        return;
    LastGroupKey_ = keyCode;
    add(keyCode, GroupKeyNameFromVirtualKey(keyCode));
}

// The time limit counts from the first key of an entry.
void GroupKey::beginOrExpire()
{
    if (!FirstGroupKey_ && entryAge() <= EntryLimitMs)
        return;
    if (!FirstGroupKey_) {
        ui->lineEdit->clear();
        LastGroupKey_ = -1;
    }
    FirstGroupKey_ = false;
    GroupTimer_.start();
}

// A fourth key starts a new entry. A name that the text contains already counts as a repetition.
void GroupKey::add(int keyCode, const QString &name)
{
    const QString text = ui->lineEdit->text();
    PlusCount_ = text.count(Plus);
    if (PlusCount_ == KeyLimit - 1) {
        PlusCount_ = 0;
        LastGroupKey_ = keyCode;
        ui->lineEdit->setText(name);
    } else if (!text.contains(name)) {
        ui->lineEdit->setText(text.isEmpty() ? name : text + Plus + name);
        if (PlusCount_ == 1)
            LastGroupKey_ = -1;
    }
}

QStringList GroupKey::modifiers() const
{
    const std::pair<const QCheckBox *, const char *> boxes[] = {
        {ui->Shift, "Shift"}, {ui->Ctrl, "Ctrl"}, {ui->Alt, "Alt"}, {ui->Win, "Win"}};
    QStringList names;
    for (const auto &box : boxes)
        if (box.first->isChecked())
            names += QLatin1String(box.second);
    return names;
}

void GroupKey::on_NewHong_clicked()
{
    const QString keys = ui->lineEdit->text();
    const QStringList checked = modifiers();
    const int count = checked.size() + (keys.isEmpty() ? 0 : keys.count(Plus) + 1);
    if (count > KeyLimit) {
        notice::ask<GroupMaxThree>(this, BindingNoticeOffset);
        PlusCount_ = 0;
        LastGroupKey_ = -1;
        ui->lineEdit->clear();
        return;
    }
    combination_ = (keys.isEmpty() ? checked : checked + QStringList(keys)).join(Plus);
    KeyDialog::on_NewHong_clicked();
}
