// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The notices: texts, keys, answers, place. Each is walked by its row.
#include "catalogue/config/LanguageChoice.h"
#include "catalogue/config/UserStore.h"
#include "device/ImageFile.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
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

QString said(const NoticeDialog &notice) { return notice.findChild<QLabel *>("label")->text(); }

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
        QCOMPARE(said(*notice), language::text(row(name).section, row(name).key, 0));
        QVERIFY(!said(*notice).isEmpty());
        QString seen;
        const char marks[] = "xnoc";
        const char *const names[] = {"CloseButton", "NewHong", "OK", "Cancel"};
        for (int i = 0; i < 4; ++i)
            seen += notice->findChild<QToolButton *>(names[i])->isHidden() ? '.' : marks[i];
        QCOMPARE(seen, QString(row(name).buttons));
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

    void offLineSaysWhy()
    {
        OffLineKind = 1;
        QCOMPARE(said(MouseOffLine()), language::text(language::Section::infoTips, "TimeOut", 0));
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
        QCOMPARE(said(notice), language::text(language::Section::key, "DialogConfigError", 0));
        ImportResult = ImageMismatch;
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(said(notice), language::text(language::Section::key, "DialogEConfigMismatch", 0));
    }

    void resetAsksForAnAnswer()
    {
        for (const char *button : {"OK", "Cancel", "CloseButton"}) {
            ContainReset question;
            QVERIFY(!question.confirmed());
            question.show();
            QTest::mouseClick(question.findChild<QToolButton *>(button), Qt::LeftButton);
            QVERIFY(!question.isVisible());
            QCOMPARE(question.confirmed(), QByteArray(button) == "OK");
        }
    }

    // A language without texts leaves what the program itself says.
    void defaultsStandForMissingTexts()
    {
        MouseOffLine notice;
        emit PostMsg::instance()->SigAllLanguage(99);
        QCOMPARE(said(notice), QString("   The mouse is offline. Please move first"));
        QCOMPARE(notice.findChild<QToolButton *>("NewHong")->text(), QString("OK"));
        UpDataParam wait;
        emit PostMsg::instance()->SigAllLanguage(99);
        QCOMPARE(said(wait), QString("Please wait, we are updating the setting"));
    }

    void runningNoticeReadsItsOwnFile()
    {
        storeLanguage(UserStore::instance(), 1);
        const QString chinese = said(ExeIsRun());
        storeLanguage(UserStore::instance(), 0);
        const QString english = said(ExeIsRun());
        QVERIFY(!chinese.isEmpty());
        QVERIFY(chinese != english);
        storeLanguage(UserStore::instance(), 7);
        QCOMPARE(said(ExeIsRun()), QString("Confirm Delete"));
        storeLanguage(UserStore::instance(), 0);
    }
};

int main(int argc, char *argv[])
{
    const ProductFolder product(smallCatalogue());
    fixture::useShippedLooks(product);
    QApplication application(argc, argv);
    LoadLanguageTables();
    tst_Notices test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_notices.moc"
