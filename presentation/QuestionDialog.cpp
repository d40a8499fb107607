// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/QuestionDialog.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "environment/MacroName.h"
#include "presentation/Notices.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"

#include <QLabel>
#include <QLineEdit>

namespace
{

// As those of the dialogs that ask for a key or a time.
constexpr QRect TextPlace{52, 24, 256, 28};
constexpr QRect FieldPlace{52, 64, 256, 36};

} // namespace

QuestionDialog::QuestionDialog() : NoticeDialog(notice::MacroName)
{
    // The field takes the place of the picture.
    findChild<QWidget *>(QStringLiteral("label_2"))->hide();
    content()->setGeometry(TextPlace);
    content()->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    lineEdit_ = new QLineEdit(content()->parentWidget());
    lineEdit_->setObjectName(QStringLiteral("lineEdit"));
    lineEdit_->setGeometry(FieldPlace);
    lineEdit_->setStyleSheet(style::lineEdit());
    lineEdit_->setFont(content()->font());
    setTabOrder(findChild<QWidget *>(QStringLiteral("CloseButton")),
                lineEdit_); // from which OK and Cancel follow
    lineEdit_->setFocus();
    connect(lineEdit_, &QLineEdit::textChanged, this, &QuestionDialog::on_lineEdit_textEdited);
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    lineEdit_->setAccessibleName(accessibleName());
}

void QuestionDialog::on_lineEdit_textEdited(const QString &arg1)
{
    const QString name = fittingMacroName(arg1);
    if (name != arg1)
        lineEdit_->setText(name);
}

void QuestionDialog::WindowClosedLan()
{
    accepted_.clear();
    close();
}

void QuestionDialog::on_OK_clicked()
{
    accepted_ = lineEdit_->text();
    NoticeDialog::on_OK_clicked();
}
