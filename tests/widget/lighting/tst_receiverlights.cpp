// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The records of a receiver that does not answer at once, or that is not the one before: what the page asks,
// what it shows meanwhile, and that an edit carries the device's own bytes for all that it does not change.
#include "device/hidusb/wire/ReplyTimeout.h"
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/LightPage.h"

#include <QThread>

namespace
{

const LightCase &Bar = LightCases[ReceiverGroup];
constexpr int SlowAnswerMs = int(hidusb::ReplyTimeout.count()) + 10; // longer than one try

struct Edit {
    const char *name;
    void (*act)(const LightPage &page);
    DongleRgbBar wanted; // of SomeBar
};
const Edit Edits[] = {
    {"mode", [](const LightPage &page) { page.mode(Bar)->setCurrentIndex(3); }, {3, 46, 166, 223, 4, 7, 1}},
    {"brightness",
     [](const LightPage &page) { page.brightness(Bar)->setValue(3); },
     {2, 46, 166, 223, 4, 3, 1}},
    {"speed", [](const LightPage &page) { page.speed(Bar)->setValue(9); }, {2, 46, 166, 223, 9, 7, 1}},
    {"box", [](const LightPage &page) { page.channel(Bar, 1)->setValue(99); }, {2, 46, 99, 223, 4, 7, 1}},
    {"step",
     [](const LightPage &page) { page.own<QToolButton>("AddR", Bar)->click(); },
     {2, 47, 166, 223, 4, 7, 1}},
    {"preset",
     [](const LightPage &page) { page.preset(Bar, Presets[1])->click(); },
     {2, 0, 255, 255, 4, 7, 1}},
    {"code",
     [](const LightPage &page) {
         auto *code = page.own<QLineEdit>("HexColor", Bar);
         code->setText("#00a6ff");
         emit code->editingFinished();
     },
     {2, 0, 166, 255, 4, 7, 1}},
};

} // namespace

class tst_ReceiverLights : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<LightPage> page;

    // A receiver with these records, of which it tells some.
    void open(bool answersBar, bool answersLamps)
    {
        page = std::make_unique<LightPage>();
        OnDevicePage = 1;
        fake.edit("dev", [](FakeDevice &device) {
            device.bar = SomeBar;
            device.indicator = {{1, 2, 3}};
        });
        answer(answersBar, answersLamps);
        page->read(lightRecord(2));
    }
    void answer(bool answersBar, bool answersLamps)
    {
        fake.edit("dev", [=](FakeDevice &device) {
            device.answersBar = answersBar;
            device.answersLamps = answersLamps;
        });
    }
    QList<int> lamps() const
    {
        return {page->lamp(0)->currentIndex(), page->lamp(1)->currentIndex(), page->lamp(2)->currentIndex()};
    }
    void changeLamps()
    {
        fake.edit("dev", [](FakeDevice &device) { device.indicator = {{3, 1, 0}}; });
        fake.clearCalls();
    }
    void beSlow()
    {
        fake.setHook([](const std::string &name) {
            if (name == "UsbFinderC_GetDongleRGBBarMode")
                QThread::msleep(SlowAnswerMs);
        });
    }
    // Without the device.
    QStringList asked() const
    {
        QStringList names;
        for (const std::string &call : fake.calls())
            names << QString::fromStdString(call).section(' ', 0, 0);
        return names;
    }
    QByteArray written() const { return bytes(fake.device("dev").indicator); }
    // As the page shows them.
    QList<int> shownBar() const
    {
        const QColor color = page->color(Bar);
        return {page->mode(Bar)->currentIndex(),
                color.red(),
                color.green(),
                color.blue(),
                page->speed(Bar)->value(),
                page->speedBox(Bar)->value(),
                page->brightness(Bar)->value(),
                page->brightnessBox(Bar)->value()};
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void cleanup()
    {
        fake.setHook(nullptr);
        page.reset();
    }

    // ---- What is asked

    void oneThatRefusesOneQuestionIsAskedTheOther()
    {
        open(false, true);
        QCOMPARE(lamps(), QList<int>({1, 2, 3}));
        page->lamp(0)->setCurrentIndex(0);
        QCOMPARE(written(), QByteArray("00 02 03"));
        page.reset();
        open(true, false);
        QCOMPARE(page->color(Bar), QColor(46, 166, 223));
        QCOMPARE(lamps(), QList<int>({0, 0, 0}));
    }

    // The paint asks it one question; the other comes behind it. What was known before stays until then.
    void oneThatIsSlowIsAskedOneQuestionInThePaint()
    {
        open(true, true);
        changeLamps();
        beSlow();
        page->page->SlotUpDataLightUILight(lightRecord(4));
        QCOMPARE(asked(), QStringList{"UsbFinderC_GetDongleRGBBarMode"});
        QCOMPARE(page->color(Bar), QColor(46, 166, 223));
        QCOMPARE(lamps(), QList<int>({1, 2, 3}));
        QTRY_COMPARE(lamps(), QList<int>({3, 1, 0}));
        QCOMPARE(asked(),
                 QStringList({"UsbFinderC_GetDongleRGBBarMode", "UsbFinderC_GetDongleIndicatorLed"}));
        QVERIFY(fake.updates().empty());
        fake.setHook(nullptr);
        fake.clearCalls();
        page->page->SlotUpDataLightUILight(lightRecord(4));
        QTRY_COMPARE(int(fake.calls().size()), 2);
    }

    // Whatever comes between the paint and the question to a slow receiver decides whether it is asked.
    void theSecondQuestionIsNotAskedInVain_data()
    {
        QTest::addColumn<QString>("then");
        for (const char *then :
             {"silent", "another device", "cable", "page left", "reset", "read again", "lamp changed"})
            QTest::newRow(then) << then;
    }
    void theSecondQuestionIsNotAskedInVain()
    {
        QFETCH(QString, then);
        open(true, true);
        changeLamps();
        beSlow();
        if (then == "silent")
            answer(false, true);
        page->page->SlotUpDataLightUILight(lightRecord(4));
        fake.setHook(nullptr);
        int wanted = 0;
        QList<int> shown{1, 2, 3};
        if (then == "another device") {
            fake.addDevice(fixture::device("other", 6, Receiver8K));
            fixture::select(fixture::info("other", Receiver8K));
        } else if (then == "cable") {
            fixture::select(fixture::info("dev", fixture::CableKind));
        } else if (then == "page left") {
            OnDevicePage = 0;
        } else if (then == "reset") {
            page->page->SlotFormResetLight();
            shown = {2, 2, 3};
        } else if (then == "read again") {
            page->page->SlotUpDataLightUILight(lightRecord(4));
            wanted = 1;
            shown = {3, 1, 0};
        } else if (then == "lamp changed") {
            page->lamp(1)->setCurrentIndex(3);
            wanted = 1;
            shown = {3, 3, 0};
        }
        int turns = 0; // of the event loop behind the paint
        QTimer turn;
        connect(&turn, &QTimer::timeout, [&turns] { ++turns; });
        turn.start();
        QTRY_VERIFY(turns > 3);
        QCOMPARE(fake.count("UsbFinderC_GetDongleIndicatorLed"), wanted);
        QCOMPARE(lamps(), shown);
    }

    // ---- An edit of what has not been read

    void theRecordIsReadBeforeItIsWritten_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(Edits)); ++i)
            QTest::newRow(Edits[i].name) << i;
    }
    void theRecordIsReadBeforeItIsWritten()
    {
        QFETCH(int, index);
        const Edit &edit = Edits[index];
        open(false, false);
        const QList<int> before = shownBar();
        edit.act(*page); // silent still
        QCOMPARE(shownBar(), before);
        QCOMPARE(fake.count("UsbFinderC_SetDongleRGBBarMode"), 0);
        QVERIFY(fake.updates().empty());
        answer(true, true);
        edit.act(*page);
        QCOMPARE(bytes(page->bar()), bytes(edit.wanted));
        const bool speed = edit.wanted.Speed != SomeBar.Speed;
        const bool brightness = edit.wanted.Brightness != SomeBar.Brightness;
        QCOMPARE(shownBar(),
                 QList<int>({edit.wanted.Mode, edit.wanted.Red, edit.wanted.Green, edit.wanted.Blue,
                             speed ? 9 : 5, speed ? 9 : 5, brightness ? 3 : 8, brightness ? 3 : 8}));
        QVERIFY(!LightPageBusy);
        page->refuse(true); // and a refusal goes back to what is shown
        const QList<int> accepted = shownBar();
        page->mode(Bar)->setCurrentIndex(5);
        page->brightness(Bar)->setValue(1);
        page->channel(Bar, 2)->setValue(7);
        QCOMPARE(shownBar(), accepted);
    }

    void theLampsAreReadBeforeOneIsWritten()
    {
        open(true, false);
        page->lamp(1)->setCurrentIndex(1);
        QCOMPARE(lamps(), QList<int>({0, 0, 0}));
        QCOMPARE(fake.count("UsbFinderC_SetDongleIndicatorLed"), 0);
        answer(true, true);
        page->lamp(1)->setCurrentIndex(1);
        QCOMPARE(written(), QByteArray("01 01 03"));
        QCOMPARE(lamps(), QList<int>({1, 1, 3}));
    }

    // A path may be another receiver's by now: what was read before is shown, and not written.
    void aRecordThatTheLastReadDidNotGetIsReadBeforeAnEdit_data()
    {
        QTest::addColumn<bool>("slow"); // so that the lamps are not asked; else it is silent
        QTest::newRow("silent") << false;
        QTest::newRow("slow") << true;
    }
    void aRecordThatTheLastReadDidNotGetIsReadBeforeAnEdit()
    {
        QFETCH(bool, slow);
        open(true, true);
        const QList<int> before = shownBar();
        fake.edit("dev", [](FakeDevice &device) {
            device.bar = {4, 9, 8, 7, 2, 3, 1};
            device.indicator = {{3, 3, 1}};
        });
        answer(false, slow);
        if (slow)
            beSlow();
        page->read(lightRecord(2));
        fake.setHook(nullptr);
        QCOMPARE(shownBar(), before);
        QCOMPARE(lamps(), QList<int>({1, 2, 3}));
        answer(true, true);
        page->speed(Bar)->setValue(6);
        page->lamp(0)->setCurrentIndex(0);
        QCOMPARE(bytes(page->bar()), bytes(DongleRgbBar{4, 9, 8, 7, 6, 3, 1}));
        QCOMPARE(written(), QByteArray("00 03 01"));
        QCOMPARE(lamps(), QList<int>({0, 3, 1}));
        QCOMPARE(shownBar(), QList<int>({4, 9, 8, 7, 6, 6, 4, 4}));
    }

    // ---- Another receiver

    void theRecordsOfAnotherAreForgotten_data()
    {
        QTest::addColumn<bool>("reset"); // else another device
        QTest::newRow("another") << false;
        QTest::newRow("reset") << true;
    }
    void theRecordsOfAnotherAreForgotten()
    {
        QFETCH(bool, reset);
        open(true, true);
        QCOMPARE(page->color(Bar), QColor(46, 166, 223));
        const DongleRgbBar others{4, 9, 8, 7, 2, 3, 1};
        if (reset)
            fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        FakeDevice device = fixture::device(reset ? "dev" : "other", 6, Receiver8K);
        device.bar = others;
        device.indicator = {{3, 3, 1}};
        device.answersBar = device.answersLamps = false;
        fake.setDevices({device});
        fixture::select(fixture::info(QString::fromStdString(device.path), Receiver8K));
        page->read(lightRecord(2));
        QCOMPARE(shownBar(), QList<int>({0, 0, 0, 0, 1, 1, 1, 1}));
        QCOMPARE(lamps(), QList<int>({0, 0, 0}));
        page->speed(Bar)->setValue(6);
        page->lamp(0)->setCurrentIndex(1);
        QCOMPARE(bytes(fake.device(device.path).bar), bytes(others));
        QCOMPARE(bytes(fake.device(device.path).indicator), QByteArray("03 03 01"));
        fake.edit(device.path, [](FakeDevice &each) { each.answersBar = each.answersLamps = true; });
        page->speed(Bar)->setValue(6);
        page->lamp(0)->setCurrentIndex(1);
        QCOMPARE(bytes(fake.device(device.path).bar), bytes(DongleRgbBar{4, 9, 8, 7, 6, 3, 1}));
        QCOMPARE(bytes(fake.device(device.path).indicator), QByteArray("01 03 01"));
    }

    // Its mouse has dropped off as it was opened, so nothing is painted.
    void aReceiverWithoutARecordShowsNothingOfAnother()
    {
        open(true, true);
        page->announceScheme(2);
        page->page->hide();
        page->page->show();
        QCOMPARE(page->color(Bar), QColor(46, 166, 223)); // its own
        QVERIFY(page->choice(2)->isChecked());
        page->page->hide();
        FakeDevice device = fixture::device("other", 6, Receiver8K);
        device.bar = {4, 9, 8, 7, 2, 3, 1};
        device.indicator = {{3, 3, 1}};
        fake.setDevices({device});
        fixture::select(fixture::info("other", Receiver8K));
        page->rgb = {}; // as the worker leaves it
        fake.clearCalls();
        page->page->show();
        QCOMPARE(shownBar(), QList<int>({0, 0, 0, 0, 1, 1, 1, 1}));
        QCOMPARE(lamps(), QList<int>({0, 0, 0}));
        QVERIFY(!page->choice(2)->isChecked());
        QCOMPARE(asked(), QStringList());
        page->announceScheme(3);
        page->read(lightRecord(2));
        QCOMPARE(shownBar(), QList<int>({4, 9, 8, 7, 3, 3, 4, 4}));
        QCOMPARE(lamps(), QList<int>({3, 3, 1}));
        QVERIFY(page->choice(3)->isChecked());
    }

    // ---- Refusals

    // The box of a lamp whose byte is none of the list shows what it showed; a refused choice goes back to
    // it.
    void aLampWithoutAnItemGoesBackToWhatItShowed()
    {
        open(true, true);
        fake.edit("dev", [](FakeDevice &device) { device.indicator = {{9, 1, 2}}; });
        page->read(lightRecord(2));
        QCOMPARE(lamps(), QList<int>({1, 1, 2}));
        page->refuse(true);
        page->lamp(0)->setCurrentIndex(3);
        QCOMPARE(lamps(), QList<int>({1, 1, 2}));
        page->refuse(false);
        page->lamp(2)->setCurrentIndex(0);
        QCOMPARE(written(), QByteArray("09 01 00")); // its byte is what it was
    }

    void aRefusedLampGoesBackToWhatWasReadForIt()
    {
        open(true, false);
        answer(true, true);
        page->refuse(true);
        page->lamp(1)->setCurrentIndex(3);
        QCOMPARE(fake.count("UsbFinderC_SetDongleIndicatorLed"), 1);
        QCOMPARE(lamps(), QList<int>({1, 2, 3}));
        page->refuse(false);
        page->lamp(1)->setCurrentIndex(3);
        QCOMPARE(written(), QByteArray("01 03 03"));
    }

    // A colour that is set in one act stops at the first channel that is refused.
    void aRefusedColorIsNotKept()
    {
        open(true, true);
        page->refuse(true);
        const QList<int> before = shownBar();
        for (const char *name : {"preset", "code"}) {
            for (const Edit &edit : Edits)
                if (qstrcmp(edit.name, name) == 0)
                    edit.act(*page);
            QCOMPARE(shownBar(), before);
            QCOMPARE(fake.count("UsbFinderC_SetDongleRGBBarMode"), 1);
            QCOMPARE(bytes(page->bar()), bytes(SomeBar));
            QVERIFY(fake.updates().empty());
            fake.clearCalls();
        }
        page->refuse(false);
        page->preset(Bar, Presets[1])->click();
        QCOMPARE(bytes(page->bar()), bytes(Edits[5].wanted));
    }
};

TEST_CLASS(tst_ReceiverLights, fixture::ShippedLooks)

#include "tst_receiverlights.moc"
