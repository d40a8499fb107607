// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The notices: texts, keys, answers, place. Each is walked by its row.
#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/ImageFile.h"
#include "environment/MacroName.h"
#include "presentation/Notices.h"
#include "presentation/QuestionDialog.h"
#include "presentation/SkinStyle.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace
{

using Maker = std::function<std::unique_ptr<NoticeDialog>()>;

struct Row {
    const char *name;
    Maker make;
    language::Section section;
    const char *key;
    const char *frame;
    const char *buttons; // seen, of CloseButton, NewHong, OK, Cancel
};

template <typename Notice> Maker maker()
{
    return [] { return std::make_unique<Notice>(); };
}

std::vector<Row> rows()
{
    using language::Section;
    return {
        {"MouseOffLine", maker<MouseOffLine>(), Section::infoTips, "DialogOffline", "MouseOffLineA", "xn.."},
        {"QuestiondialogB", maker<QuestiondialogB>(), Section::home, "ErrorDevice", "QuestiondialogBA",
         "x..."},
        {"ContainReset", maker<ContainReset>(), Section::Settings, "DialogRestore", "ContainResetA", "x.oc"},
        {"InportFail", maker<InportFail>(), Section::key, "DialogConfigError", "InportFailA", "xn.."},
        {"LeftButtonOnly", maker<LeftButtonOnly>(), Section::key, "DialogKeepLeftKey", "LeftButtonOnlyA",
         "x..."},
        {"MakeMacro", maker<MakeMacro>(), Section::home, "MakeMaro", "MakeMacroA", "xn.."},
        {"SameMacro", maker<SameMacro>(), Section::macro, "DialogSameMacroName", "SameMacroA", "xn.."},
        {"GroupMaxThree", maker<GroupMaxThree>(), Section::home, "MaxThree", "GroupMaxThreeA", "xn.."},
        {"KeyNumberLimit", maker<KeyNumberLimit>(), Section::macro, "DialogMaxMacroKey", "KeyNumberLimitA",
         "xn.."},
        {"DeleteConfirm", maker<DeleteConfirm>(), Section::macro, "DialogDeleteMacro", "DeleteConfirmA",
         "xn.."},
        {"LessThree", maker<LessThree>(), Section::key, "DialogDebounceTips", "LessThreeA", "xn.."},
        {"RePair", maker<RePair>(), Section::home, "Repair", "RePairA", "x.oc"},
        {"QuestionDialog", maker<QuestionDialog>(), Section::macro, "DialogInputMacroName", "QuestionDialogA",
         "x.oc"},
        {"ExeIsRun", maker<ExeIsRun>(), Section::home, "OnRun", "ExeIsRunA", "xn.."},
        {"UpDataParam", maker<UpDataParam>(), Section::infoTips, "DialogUpdating", "UpDataParamA", "...."},
    };
}

const Row &row(const QString &name)
{
    static const std::vector<Row> all = rows();
    for (const Row &each : all)
        if (name == QLatin1String(each.name))
            return each;
    return all.front();
}

QString shownText(const NoticeDialog &notice) { return notice.findChild<QLabel *>("label")->text(); }

} // namespace

class tst_Notices : public QObject
{
    Q_OBJECT

    static void eachNotice()
    {
        QTest::addColumn<QString>("name");
        for (const Row &each : rows())
            QTest::newRow(each.name) << QString(each.name);
    }

    template <typename Question> static void checkAnswer()
    {
        QFETCH(QString, button);
        QFETCH(int, key);
        QFETCH(bool, yes);
        Question question;
        QVERIFY(!question.isConfirmed());
        question.show();
        auto *pressed = question.template findChild<QToolButton *>(button);
        if (key != 0)
            QTest::keyClick(&question, Qt::Key(key));
        else if (pressed->isVisible())
            QTest::mouseClick(pressed, Qt::LeftButton);
        else
            return; // another question's button
        QVERIFY(!question.isVisible());
        QCOMPARE(question.isConfirmed(), yes);
    }

private slots:
    void init() { fixture::clean(); }

    void isBuiltByItsRow_data() { eachNotice(); }
    void isBuiltByItsRow()
    {
        QFETCH(QString, name);
        const auto notice = row(name).make();
        QVERIFY(!notice->parentWidget());
        QCOMPARE(int(notice->windowFlags() & ~Qt::WindowType_Mask) & 27666,
                 27666 & ~int(Qt::WindowType_Mask));
        QVERIFY(notice->isWindow());
        QVERIFY(notice->findChild<QFrame *>(row(name).frame));
        QCOMPARE(shownText(*notice), language::text(row(name).section, row(name).key, 0));
        QVERIFY(!shownText(*notice).isEmpty());
        QString seen;
        const char marks[] = "xnoc";
        const char *const names[] = {"CloseButton", "NewHong", "OK", "Cancel"};
        for (int i = 0; i < 4; ++i)
            seen += notice->findChild<QToolButton *>(names[i])->isHidden() ? '.' : marks[i];
        QCOMPARE(seen, QString(row(name).buttons));
        // Where there is no button below, there is no place for one either.
        QCOMPARE(notice->findChild<QLabel *>("footer")->isHidden(), seen == "x...");
    }

    void keysCloseIt_data() { eachNotice(); }
    void keysCloseIt()
    {
        QFETCH(QString, name);
        const QString buttons = row(name).buttons;
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
            const auto notice = row(name).make();
            notice->show();
            QTest::keyClick(notice.get(), key);
            const bool closes = key == Qt::Key_Escape ? buttons.contains('x')
                                                      : buttons.contains('n') || buttons.contains('o');
            QCOMPARE(notice->isVisible(), !closes);
        }
    }

    void standsOverTheMiddle()
    {
        QWidget ground;
        ground.setGeometry(100, 60, 883, 630);
        ground.show();
        QuestiondialogB notice;
        notice.placeOver(&ground);
        const QPoint middle = ground.mapToGlobal(QPoint(0, 0)) +
                              QPoint((883 - notice.width()) / 2, (630 - notice.height()) / 2);
        QCOMPARE(notice.pos(), middle);
        notice.placeOver(&ground, PageNoticeOffset);
        QCOMPARE(notice.pos(), middle + QPoint(-75, -65));
    }

    void theWindowUnderItIsDimmed_data() { eachNotice(); }
    void theWindowUnderItIsDimmed()
    {
        QFETCH(QString, name);
        QWidget ground;
        ground.setStyleSheet("background: rgb(200, 200, 200);");
        ground.setGeometry(100, 60, 883, 630);
        ground.show();
        QWidget page(&ground);
        page.setGeometry(100, 100, 600, 400);
        page.show();
        const auto light = [&ground](int x, int y) { return ground.grab().toImage().pixelColor(x, y).red(); };
        const auto notice = row(name).make();
        notice->placeOver(&page);
        QCOMPARE(light(5, 5), 200);
        notice->show();
        const bool isWait = QString(row(name).buttons) == "....";
        QCOMPARE(light(5, 5) < 120, !isWait);
        const QPoint edge = notice->geometry().topLeft() - ground.mapToGlobal(QPoint(0, 0));
        const int middle = edge.y() + notice->height() / 2;
        QCOMPARE(light(edge.x() - 3, middle) < light(5, 5), !isWait); // its shadow
        const auto above = row(name).make();
        above->placeOver(&page);
        const int dimmed = light(5, 5);
        above->show();
        QCOMPARE(light(5, 5), dimmed);
        above->hide();
        QCOMPARE(light(5, 5), dimmed);
        notice->hide();
        QCOMPARE(light(5, 5), 200);
    }

    void aWindowThatGoesTakesItsShadeAlong()
    {
        auto ground = std::make_unique<QWidget>();
        ground->resize(883, 630);
        ground->show();
        QuestiondialogB notice;
        notice.placeOver(ground.get());
        notice.show();
        ground.reset();
        notice.close();
        QVERIFY(!notice.isVisible());
    }

    void itsSignTellsItsKind_data()
    {
        QTest::addColumn<QString>("sign");
        QTest::addColumn<bool>("destroys");
        const std::tuple<const char *, const char *, bool> signs[] = {
            {"MouseOffLine", "Warn.png", false},     {"QuestiondialogB", "Warn.png", false},
            {"InportFail", "Warn.png", false},       {"LessThree", "Warn.png", false},
            {"LeftButtonOnly", "Info.png", false},   {"MakeMacro", "Info.png", false},
            {"SameMacro", "Info.png", false},        {"GroupMaxThree", "Info.png", false},
            {"KeyNumberLimit", "Info.png", false},   {"ExeIsRun", "Info.png", false},
            {"DeleteConfirm", "Question.png", true}, {"ContainReset", "Question.png", true},
            {"RePair", "Question.png", false},       {"UpDataParam", "Wait.png", false},
        };
        for (const auto &[name, sign, destroys] : signs)
            QTest::newRow(name) << QString(sign) << destroys;
    }
    void itsSignTellsItsKind()
    {
        const auto notice = row(QTest::currentDataTag()).make();
        notice->show();
        QFETCH(QString, sign);
        QVERIFY(notice->findChild<QLabel *>("label_2")->styleSheet().contains("/WarningDialog/" + sign));
        QFETCH(bool, destroys);
        for (const char *name : {"NewHong", "OK"}) {
            auto *const button = notice->findChild<QToolButton *>(name);
            QCOMPARE(button->styleSheet().isEmpty(), button->isHidden()); // what nobody sees is not loaded
            button->show();
            const QString sheet = button->styleSheet();
            QVERIFY(sheet.contains("/WarningDialog/Confirm.png"));
            QCOMPARE(sheet.indexOf("Danger.png") > sheet.indexOf("Confirm.png"), destroys);
        }
        notice->findChild<QToolButton *>("Cancel")->show();
        QVERIFY(!notice->findChild<QToolButton *>("Cancel")->styleSheet().contains("Danger"));
    }

    void offLineSaysWhy()
    {
        OffLineKind = 1;
        QCOMPARE(shownText(MouseOffLine()), language::text(language::Section::infoTips, "TimeOut", 0));
    }

    void offLineClosesWhenTheMouseIsBack()
    {
        MouseOffLine notice;
        QTimer::singleShot(20, [] { emit PostMsg::instance()->SigCloseOffOnline(); });
        notice.exec();
        QVERIFY(!notice.isVisible());
    }

    void importSaysWhy()
    {
        ImportResult = ImageUnreadable;
        InportFail notice;
        QCOMPARE(shownText(notice), language::text(language::Section::key, "DialogConfigError", 0));
        ImportResult = ImageMismatch;
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(shownText(notice), language::text(language::Section::key, "DialogEConfigMismatch", 0));
    }

    void answers_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("key"); // 0: the button is clicked
        QTest::addColumn<bool>("yes");
        QTest::newRow("OK") << "OK" << 0 << true;
        QTest::newRow("NewHong") << "NewHong" << 0 << true;
        QTest::newRow("Cancel") << "Cancel" << 0 << false;
        QTest::newRow("close") << "CloseButton" << 0 << false;
        QTest::newRow("enter") << "" << int(Qt::Key_Return) << true;
        QTest::newRow("escape") << "" << int(Qt::Key_Escape) << false;
    }
    void answers()
    {
        checkAnswer<ContainReset>();
        checkAnswer<RePair>();
        checkAnswer<DeleteConfirm>();
    }

    void aScriptedAnswerOpensNothing_data()
    {
        QTest::addColumn<bool>("yes");
        QTest::newRow("yes") << true;
        QTest::newRow("no") << false;
    }
    void aScriptedAnswerOpensNothing()
    {
        QFETCH(bool, yes);
        const notice::NextAnswer<RePair> ofAnother(!yes);
        const notice::NextAnswer<ContainReset> first(yes);
        const notice::NextAnswer<ContainReset> second(!yes);
        QCOMPARE(notice::ask<ContainReset>(), yes);
        QVERIFY(first.isTaken() && !second.isTaken() && !ofAnother.isTaken());
        QCOMPARE(notice::ask<ContainReset>(), !yes);
        QVERIFY(second.isTaken() && !ofAnother.isTaken());
    }

    void aScriptedAnswerKeepsTheCallersText()
    {
        const notice::NextAnswer<UpDateWarning> answer(true);
        notice::ask<UpDateWarning>(nullptr, {}, "Plug in the cable");
        QCOMPARE(answer.text(), QString("Plug in the cable"));
    }

    void withoutAScriptedAnswerTheDialogOpens_data() { aScriptedAnswerOpensNothing_data(); }
    void withoutAScriptedAnswerTheDialogOpens()
    {
        QFETCH(bool, yes);
        {
            const notice::NextAnswer<RePair> unused(!yes); // ends with its scope
        }
        const QWidget page;
        QString shown;
        fixture::whenModal<RePair>([&](RePair *question) {
            shown = shownText(*question);
            yes ? question->on_OK_clicked() : question->on_Cancel_clicked();
        });
        QCOMPARE(notice::ask<RePair>(&page, {5, 7}, "Pair it?"), yes);
        QCOMPARE(shown, QString("Pair it?"));
    }

    void eachDefaultStandsForAMissingText()
    {
        const std::pair<Maker, const char *> defaults[] = {
            {maker<QuestiondialogB>(), "Do not insert multiple identical devices"},
            {maker<LeftButtonOnly>(), ""},
            {maker<MakeMacro>(), "Please create a macro first"},
            {maker<SameMacro>(), "Already have a same name macro"},
            {maker<GroupMaxThree>(), ""},
            {maker<ContainReset>(), " Is need to restore the default settings"},
            {maker<KeyNumberLimit>(), ""},
            {maker<DeleteConfirm>(), "Confirm Delete"},
            {maker<InportFail>(), "Config does not match the device"},
            {maker<LessThree>(), "Please wait, we are updating the setting"},
            {maker<UpDateWarning>(), "Confirm Delete"},
            {maker<RePair>(), "        Do you need to pair again"},
        };
        for (const auto &row : defaults) {
            const auto notice = row.first();
            const fixture::WithoutTexts bare;
            emit PostMsg::instance()->SigAllLanguage(0);
            QCOMPARE(shownText(*notice), QString(row.second));
        }
    }

    // One that is built after the language was stored speaks it, without a signal.
    void aNewOneSpeaksTheStoredLanguage_data() { eachNotice(); }
    void aNewOneSpeaksTheStoredLanguage()
    {
        QFETCH(QString, name);
        storeLanguage(UserStore::instance(), 9);
        const auto told = row(name).make();
        emit PostMsg::instance()->SigAllLanguage(0);
        storeLanguage(UserStore::instance(), 0);
        QCOMPARE(shownText(*row(name).make()), shownText(*told));
    }

    void theWarningSaysWhatItIsGiven()
    {
        UpDateWarning warning;
        warning.setText("Plug it in");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(shownText(warning), QString("Plug it in"));
        QCOMPARE(warning.accessibleName(), QString("Plug it in"));
        warning.setModal(true);
        warning.show(); // returns at once, and may be shown again
        QVERIFY(warning.isVisible());
        warning.on_NewHong_clicked();
        QVERIFY(!warning.isVisible());
        warning.setText("Again");
        warning.show();
        QCOMPARE(shownText(warning), QString("Again"));
    }

    void aNameIsTakenByOkAlone_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("name");
        QTest::newRow("OK") << "OK"
                            << "Jump";
        QTest::newRow("Cancel") << "Cancel"
                                << "";
        QTest::newRow("close") << "CloseButton"
                               << "";
    }
    void aNameIsTakenByOkAlone()
    {
        QFETCH(QString, button);
        QuestionDialog question;
        question.show();
        QTest::keyClicks(question.findChild<QLineEdit *>("lineEdit"), "Jump");
        QTest::mouseClick(question.findChild<QToolButton *>(button), Qt::LeftButton);
        QVERIFY(!question.isVisible());
        QTEST(question.name(), "name");
    }

    // As in the dialogs that ask for a key or a time.
    void theNamesCaptionStandsOverTheLeftEdgeOfItsField()
    {
        QuestionDialog question;
        question.show();
        const auto *caption = question.findChild<QLabel *>("label");
        const auto *field = question.findChild<QLineEdit *>("lineEdit");
        QCOMPARE(caption->alignment(), Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(caption->x(), field->x());
    }

    // But only where that takes no more lines than any other break.
    void aTextOfSeveralLinesBreaksBehindItsSentences()
    {
        SkinStyle skin;
        QLabel label;
        label.setStyle(&skin);
        label.setWordWrap(true);
        label.setAlignment(Qt::AlignCenter);
        const QString last = "The last one is of eight words altogether.";
        label.resize(label.fontMetrics().size(0, last).width() + 4, 200);
        const auto drawn = [&label](const QString &text) {
            label.setText(text);
            return label.grab().toImage();
        };
        const QString two = "One. " + last, four = "One. Two. Three. " + last;
        QCOMPARE(drawn(two), drawn(QString(two).replace(". ", ".\n")));
        QVERIFY(drawn(four) != drawn(QString(four).replace(". ", ".\n")));
    }

    void enterInTheFieldTakesTheName()
    {
        QuestionDialog question;
        question.show();
        QTest::keyClicks(question.findChild<QLineEdit *>("lineEdit"), "a b ");
        QTest::keyClick(question.findChild<QLineEdit *>("lineEdit"), Qt::Key_Return);
        QCOMPARE(question.name(), QString("ab"));
    }

    void aNameFitsTheDevice_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        QTest::newRow("blank inside") << "a b"
                                      << "a b";
        QTest::newRow("blank at the end") << "a b "
                                          << "ab";
        QTest::newRow("30") << QString(30, 'x') << QString(30, 'x');
        QTest::newRow("31") << QString(31, 'x') << QString(30, 'x');
        QTest::newRow("200") << QString(200, 'x') << QString(30, 'x');
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("separator") << "a/b"
                                   << "ab";
        QTest::newRow("parent") << "../a"
                                << "a";
        QTest::newRow("hidden") << ".a.b"
                                << "a.b";
        QTest::newRow("the word that hides a file") << "myxml"
                                                    << "myxm";
        QTest::newRow("the same within") << "axmllb"
                                         << "axmb";
        QTest::newRow("other case") << "XML"
                                    << "XML";
        QTest::newRow("control character") << "a\tb\n"
                                           << "ab";
    }
    void aNameFitsTheDevice()
    {
        QFETCH(QString, typed);
        QTEST(fittingMacroName(typed), "kept");
        const QString wide = fittingMacroName(QString(16, QChar(0x4E2D)));
        QVERIFY(wide.toLocal8Bit().size() <= 30);
        QVERIFY(!wide.isEmpty());
    }

    void aLanguageThatDoesNotExistSpeaksTheFirst()
    {
        const RePair notice;
        const QString english = shownText(notice);
        for (const int index : {3, 99, -1}) {
            notice.findChild<QLabel *>("label")->clear();
            emit PostMsg::instance()->SigAllLanguage(index);
            QCOMPARE(shownText(notice), english);
        }
    }

    // Without texts there is what the program itself says.
    void defaultsStandForMissingTexts()
    {
        MouseOffLine notice;
        const fixture::WithoutTexts bare;
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(shownText(notice), QString("   The mouse is offline. Please move first"));
        QCOMPARE(notice.findChild<QToolButton *>("NewHong")->text(), QString("OK"));
        const UpDataParam wait;
        QCOMPARE(shownText(wait), QString("Please wait, we are updating the setting"));
    }

    void runningNoticeReadsItsOwnFile()
    {
        storeLanguage(UserStore::instance(), 1);
        const QString chinese = shownText(ExeIsRun());
        storeLanguage(UserStore::instance(), 0);
        const QString english = shownText(ExeIsRun());
        QVERIFY(!chinese.isEmpty());
        QVERIFY(chinese != english);
        for (const int index : {3, 7}) { // of which there is no file
            storeLanguage(UserStore::instance(), index);
            const QString fallback = shownText(ExeIsRun());
            storeLanguage(UserStore::instance(), 0);
            QCOMPARE(fallback, english);
        }
    }
};

TEST_CLASS(tst_Notices, fixture::ShippedLooks)

#include "tst_notices.moc"
