// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs that ask for a combination, a key, a fire key and a delay: texts, ways to end, and the limits
// of the numbers.
#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/FireKey.h"
#include "tests/support/TestMain.h"
#include "tests/widget/presentation/KeyDialogs.h"

#include <QLabel>
#include <QSpinBox>

using namespace keydialogs;

namespace
{

using language::Section;
using DialogMaker = std::function<std::unique_ptr<InputDialog>()>;

struct FormRow {
    const char *widget;
    Section section;
    const char *key;
    const char *fallback;
};
struct DialogRow {
    const char *name;
    DialogMaker make;
    std::vector<FormRow> texts;
};

template <typename Dialog> DialogMaker dialogMaker()
{
    return [] { return std::make_unique<Dialog>(); };
}

const std::vector<DialogRow> &dialogRows()
{
    static const std::vector<DialogRow> all = {
        {"GroupKey", dialogMaker<GroupKey>(), {{"label", Section::home, "ComKey", "Please enter keystroke"}}},
        {"FireKey",
         dialogMaker<FireKey>(),
         {{"label", Section::key, "DialogFireKeyInterval", "间隔 (10-255)"},
          {"label_2", Section::key, "DialogFireKeyTimes", "次数 (0-3)"},
          {"label_3", Section::key, "DialogFireKeyTips", "次数设置为0时, 按下按键一直发, 松开按键结束"}}},
        {"addKey", dialogMaker<addKey>(), {{"label", Section::home, "EnterKey", "Please enter keystroke"}}},
        {"AddDelayTime", dialogMaker<AddDelayTime>(), {{"label", Section::home, "EnterDelay", "请输入延时"}}},
    };
    return all;
}

const DialogRow &dialogRow(const QString &name)
{
    return *std::find_if(dialogRows().begin(), dialogRows().end(),
                         [&](const DialogRow &each) { return name == each.name; });
}

QString textOf(const QWidget &form, const char *name)
{
    return form.findChild<QWidget *>(name)->property("text").toString();
}

} // namespace

class tst_BindingDialogs : public QObject
{
    Q_OBJECT

    static void eachDialog()
    {
        QTest::addColumn<QString>("name");
        for (const DialogRow &each : dialogRows())
            QTest::newRow(each.name) << QString(each.name);
    }

private slots:
    void init() { fixture::clean(); }

    void isBuiltByItsForm_data() { eachDialog(); }
    void isBuiltByItsForm()
    {
        QFETCH(QString, name);
        const auto dialog = dialogRow(name).make();
        QVERIFY(!dialog->parentWidget());
        QVERIFY(dialog->isWindow());
        QVERIFY(dialog->windowFlags() & Qt::FramelessWindowHint);
        QVERIFY(!dialog->isAccepted());
        for (const FormRow &text : dialogRow(name).texts) {
            QCOMPARE(textOf(*dialog, text.widget), language::text(text.section, text.key, 0));
            QVERIFY(!textOf(*dialog, text.widget).isEmpty());
        }
        QCOMPARE(textOf(*dialog, "NewHong"), QString("OK"));
        QCOMPARE(textOf(*dialog, "NewHong_2"), QString("Cancel"));
        QVERIFY(!dialog->accessibleName().isEmpty());
        for (const auto *control : dialog->findChildren<QAbstractSpinBox *>())
            QVERIFY(!control->accessibleName().isEmpty());
    }

    void defaultsStandForMissingTexts_data() { eachDialog(); }
    void defaultsStandForMissingTexts()
    {
        QFETCH(QString, name);
        const auto dialog = dialogRow(name).make();
        {
            const fixture::WithoutTexts bare;
            emit PostMsg::instance()->SigAllLanguage(0);
            for (const FormRow &text : dialogRow(name).texts)
                QCOMPARE(textOf(*dialog, text.widget), QString(text.fallback));
            QCOMPARE(textOf(*dialog, "NewHong"), QString("确定"));
            QCOMPARE(textOf(*dialog, "NewHong_2"), QString("取消"));
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(textOf(*dialog, "NewHong_2"), QString("Cancel"));
    }

    void aNewOneSpeaksTheStoredLanguage_data() { eachDialog(); }
    void aNewOneSpeaksTheStoredLanguage()
    {
        QFETCH(QString, name);
        for (const int index : {0, 9}) { // there is no language but the first
            storeLanguage(UserStore::instance(), index);
            const QString caption = textOf(*dialogRow(name).make(), "NewHong_2");
            storeLanguage(UserStore::instance(), 0);
            QCOMPARE(caption, QString("Cancel"));
        }
    }

    void endsByEachButton_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<bool>("accepted");
        for (const DialogRow &each : dialogRows())
            for (const char *button : {"NewHong", "NewHong_2", "CloseButton", ""})
                QTest::addRow("%s %s", each.name, button)
                    << QString(each.name) << QByteArray(button) << (QByteArray(button) == "NewHong");
    }
    void endsByEachButton()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, button);
        QFETCH(bool, accepted);
        const auto dialog = dialogRow(name).make();
        QTimer::singleShot(0, dialog.get(), [&] {
            if (button.isEmpty())
                dialog->close(); // as the window manager does
            else
                click(*dialog, button);
        });
        QCOMPARE(dialog->exec(), accepted ? 1 : 0);
        QCOMPARE(dialog->isAccepted(), accepted);
    }

    void standsWhereItsPageWantsIt()
    {
        QWidget page;
        page.setGeometry(100, 60, 883, 630);
        page.show();
        FireKey dialog;
        dialog.placeOver(&page, InputDialogOffset);
        QCOMPARE(dialog.pos(), page.mapToGlobal(QPoint()) +
                                   QPoint((883 - dialog.width()) / 2 - 50, (630 - dialog.height()) / 2 - 70));
    }

    // --- FireKey

    void fireKeyRanges_data()
    {
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("keptInterval");
        QTest::addColumn<int>("keptCount");
        QTest::newRow("usual") << 10 << 3 << 10 << 3;
        QTest::newRow("low") << 10 << 0 << 10 << 0;
        QTest::newRow("high") << 255 << 3 << 255 << 3;
        QTest::newRow("below") << 9 << -1 << 10 << 0;
        QTest::newRow("above") << 256 << 4 << 255 << 3;
        QTest::newRow("a strange record") << 0 << 255 << 10 << 3;
    }
    void fireKeyRanges()
    {
        QFETCH(int, interval);
        QFETCH(int, count);
        FireKey dialog;
        dialog.setValues(interval, count);
        open(dialog);
        click(dialog, "NewHong");
        QVERIFY(dialog.isAccepted());
        QTEST(dialog.interval(), "keptInterval");
        QTEST(dialog.count(), "keptCount");
    }

    void fireKeyIsTypedAndEnded()
    {
        FireKey dialog;
        QCOMPARE(dialog.interval(), 10);
        QCOMPARE(dialog.count(), 3);
        open(dialog);
        auto *time = dialog.findChild<QSpinBox *>("Time");
        auto *count = dialog.findChild<QSpinBox *>("Count");
        QCOMPARE(dialog.focusWidget(), time);
        time->selectAll();
        QTest::keyClicks(time, "200");
        QTest::keyClick(time, Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget(), count);
        QTest::keyClick(count, Qt::Key_Down);
        QTest::keyClick(count, Qt::Key_Return);
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.interval(), 200);
        QCOMPARE(dialog.count(), 2);
    }

    void fireKeyEscapes()
    {
        FireKey dialog;
        open(dialog);
        QTest::keyClick(dialog.findChild<QSpinBox *>("Time"), Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
        QVERIFY(!dialog.isAccepted());
    }

    // --- AddDelayTime

    void delays_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("milliseconds");
        QTest::newRow("nothing") << "" << 10;
        QTest::newRow("low") << "10" << 10;
        QTest::newRow("high") << "65535" << 65535;
        QTest::newRow("below") << "9" << 10;
        QTest::newRow("one digit too many") << "655350" << 65535;
        QTest::newRow("letters") << "1a2b3c" << 123;
    }
    void delays()
    {
        QFETCH(QString, typed);
        AddDelayTime dialog;
        open(dialog);
        auto *box = dialog.findChild<QSpinBox *>("spinBox");
        QCOMPARE(box->minimum(), 10);
        QCOMPARE(box->maximum(), 65535);
        QCOMPARE(dialog.milliseconds(), 10);
        box->selectAll();
        QTest::keyClicks(box, typed);
        QTest::keyClick(box, Qt::Key_Enter);
        QVERIFY(dialog.isAccepted());
        QTEST(dialog.milliseconds(), "milliseconds");
    }
};

TEST_CLASS(tst_BindingDialogs, fixture::ShippedLooks)

#include "tst_bindingdialogs.moc"
