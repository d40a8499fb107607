// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/InputDialog.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>

namespace
{

constexpr FormText Buttons[] = {
    {"NewHong", language::Section::common, "OK"},
    {"NewHong_2", language::Section::common, "Cancel"},
};

// As in the notices' form.
constexpr QRect FooterPlace{1, 132, 358, 67};

QWidget *named(const QWidget *form, const char *name)
{
    return form->findChild<QWidget *>(QLatin1String(name));
}

QString textOf(const QWidget *widget) { return widget->property("text").toString(); }

} // namespace

InputDialog::InputDialog(std::vector<FormText> formTexts) : texts_(std::move(formTexts))
{
    texts_.insert(texts_.end(), std::begin(Buttons), std::end(Buttons));
}

void InputDialog::finishForm()
{
    becomeNotice();
    for (const FormText &text : texts_)
        defaults_ += textOf(named(this, text.widget));
    footer_ = new QLabel(findChild<QFrame *>(QString(), Qt::FindDirectChildrenOnly));
    footer_->setGeometry(FooterPlace);
    footer_->lower();
    onFirstShow(this, [this] { applyStyle(); });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    scaleFontsToScreen(this);
}

void InputDialog::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("WarningDialog"));
    const QString buttonColor = style::color("ButtonColor");
    const QString inkColor = style::color("LabelColor");
    const auto button = [&](const char *name, const QString &stem) {
        named(this, name)->setStyleSheet(style::textButton(folder, buttonColor, stem));
    };
    button("NewHong", QStringLiteral("Confirm"));
    button("NewHong_2", QStringLiteral("Cancel"));
    named(this, "CloseButton")->setStyleSheet(style::titleButton(folder, QStringLiteral("Close")));
    for (auto *label : findChildren<QLabel *>())
        label->setStyleSheet(style::label(inkColor));
    footer_->setStyleSheet(style::labelPicture(folder, QStringLiteral("Footer.png")));
    for (auto *box : findChildren<QCheckBox *>())
        box->setStyleSheet(style::checkBox(folder, inkColor));
    for (auto *box : findChildren<QSpinBox *>())
        box->setStyleSheet(style::spinBox(folder));
    if (auto *field = findChild<QLineEdit *>(QStringLiteral("lineEdit")))
        field->setStyleSheet(style::lineEdit());
    auto *frame = findChild<QFrame *>(QString(), Qt::FindDirectChildrenOnly);
    frame->setStyleSheet(style::dialogBackground(folder, frame->objectName()));
}

void InputDialog::SlotAllLanguage(int index)
{
    nameWidgets(this, index);
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        QWidget *widget = named(this, texts_[i].widget);
        const QString text = language::text(texts_[i].section, texts_[i].key, index);
        widget->setProperty("text", text.isEmpty() ? defaults_[int(i)] : text);
        if (const auto *label = qobject_cast<QLabel *>(widget); label && label->buddy())
            label->buddy()->setAccessibleName(label->text());
    }
    setAccessibleName(textOf(named(this, texts_.front().widget)));
}

void InputDialog::on_NewHong_clicked() { accept(); }

void InputDialog::on_NewHong_2_clicked() { reject(); }

void InputDialog::on_CloseButton_clicked() { reject(); }

void InputDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        on_NewHong_clicked();
    else if (event->key() == Qt::Key_Escape)
        on_NewHong_2_clicked();
    event->accept();
}
