// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/NoticeDialog.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"
#include "ui_NoticeDialog.h"

#include <QKeyEvent>

namespace
{

constexpr int FooterHalf = 28;
constexpr const char *SignPictures[] = {"Warn.png", "Info.png", "Question.png"}; // by NoticeSign

QString orDefault(const QString &text, const char *fallback)
{
    return text.isEmpty() ? QString::fromUtf8(fallback) : text;
}

} // namespace

NoticeDialog::NoticeDialog(const NoticeKind &noticeKind)
    : kind_(noticeKind), ui(std::make_unique<Ui::NoticeDialog>())
{
    ui->setupUi(this);
    becomeNotice();
    ui->frame->setObjectName(QLatin1String(kind_.frameName));
    arrangeButtons();
    onFirstShow(this, [this] { applyStyle(); });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    scaleFontsToScreen(this);
}

NoticeDialog::~NoticeDialog() = default;

void NoticeDialog::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("WarningDialog"));
    const bool isWait = kind_.buttons == NoticeButtons::None;
    const QString buttonColor = style::color("ButtonColor");
    const auto button = [&folder, &buttonColor](const QString &stem) {
        return style::textButton(folder, buttonColor, stem);
    };
    const QString danger =
        kind_.outcome == NoticeOutcome::Destroys ? button(QStringLiteral("Danger")) : QString();
    const char *const sign = isWait ? "Wait.png" : SignPictures[int(kind_.sign)];
    // First, because the frame's sheet styles anew what stands on it.
    findChild<QFrame *>(QLatin1String(kind_.frameName))
        ->setStyleSheet(style::dialogBackground(folder, QLatin1String(kind_.frameName)));
    setStyleSheetWhenShown(ui->CloseButton, style::titleButton(folder, QStringLiteral("Close")));
    setStyleSheetWhenShown(ui->NewHong, button(QStringLiteral("Confirm")) + danger);
    setStyleSheetWhenShown(ui->OK, button(QStringLiteral("Confirm")) + danger);
    setStyleSheetWhenShown(ui->Cancel, button(QStringLiteral("Cancel")));
    ui->label->setStyleSheet(style::label(style::color("LabelColor")));
    ui->footer->setStyleSheet(style::labelPicture(folder, QStringLiteral("Footer.png")));
    ui->label_2->setStyleSheet(style::labelPicture(folder, QLatin1String(sign)));
}

void NoticeDialog::arrangeButtons()
{
    ui->Busy->setVisible(kind_.buttons == NoticeButtons::None);
    ui->CloseButton->setVisible(kind_.buttons != NoticeButtons::None);
    ui->NewHong->setVisible(kind_.buttons == NoticeButtons::Confirm);
    ui->OK->setVisible(kind_.buttons == NoticeButtons::Question);
    ui->Cancel->setVisible(kind_.buttons == NoticeButtons::Question);
    if (kind_.buttons != NoticeButtons::Close)
        return;
    // Centres picture and text in the space that the footer leaves.
    ui->footer->hide();
    ui->label_2->move(ui->label_2->x(), ui->label_2->y() + FooterHalf);
    ui->label->move(ui->label->x(), ui->label->y() + FooterHalf);
}

void NoticeDialog::SlotAllLanguage(int index)
{
    nameWidgets(this, index);
    setTexts(language::text(kind_.section, textKey(), index),
             language::text(language::Section::common, "OK", index),
             language::text(language::Section::common, "Cancel", index));
}

void NoticeDialog::setTexts(const QString &text, const QString &confirm, const QString &cancel)
{
    const QString shown = orDefault(ownText_.isEmpty() ? text : ownText_, kind_.defaultText);
    ui->label->setText(shown);
    ui->NewHong->setText(orDefault(confirm, "OK"));
    ui->OK->setText(ui->NewHong->text());
    ui->Cancel->setText(orDefault(cancel, "Cancel"));
    setAccessibleName(shown.trimmed());
}

void NoticeDialog::setText(const QString &text)
{
    ownText_ = text;
    setTexts(text, ui->NewHong->text(), ui->Cancel->text());
}

QLabel *NoticeDialog::content() const { return ui->label; }

void NoticeDialog::end(bool confirmed)
{
    confirmed_ = confirmed;
    close();
}

void NoticeDialog::on_CloseButton_clicked() { end(false); }

void NoticeDialog::on_NewHong_clicked() { end(true); }

void NoticeDialog::on_OK_clicked() { end(true); }

void NoticeDialog::on_Cancel_clicked() { end(false); }

// Does not call QDialog::keyPressEvent(), which closes a wait on Escape.
void NoticeDialog::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool escape = event->key() == Qt::Key_Escape;
    if (enter && kind_.buttons == NoticeButtons::Confirm)
        on_NewHong_clicked();
    else if (enter && kind_.buttons == NoticeButtons::Question)
        on_OK_clicked();
    else if (escape && kind_.buttons == NoticeButtons::Question)
        on_Cancel_clicked();
    else if (escape && kind_.buttons != NoticeButtons::None)
        on_CloseButton_clicked();
    event->accept();
}
