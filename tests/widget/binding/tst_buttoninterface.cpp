// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page: what stands on it, what it shows of a record, and that showing is no edit.
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include "binding/ButtonList.h"
#include "device/ImageCache.h"

#include <QComboBox>
#include <random>

class tst_Buttoninterface : public ButtonPageTest
{
    Q_OBJECT

private:
    // The slots, with classes that are mostly known, and some of what lies behind them.
    static void alter(FlashDataMap &map, std::mt19937 &random)
    {
        auto *const bytes = reinterpret_cast<uint8_t *>(&map);
        for (KeyBinding &binding : map.KeyBindings)
            binding = {uint8_t(random() % 14), uint8_t(random()), uint8_t(random())};
        for (int k = 0; k < 400; ++k)
            bytes[random() % sizeof map] = uint8_t(random());
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the macros' old buttons
    }

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    // ---- The form

    void startsWithTheButtons()
    {
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        for (const Row &row : ButtonPageRows) {
            QVERIFY2(page().button(row.caption)->isCheckable(), row.caption);
            QVERIFY2(page().button(row.marker), row.marker);
        }
        for (const char *group : {"ButtonGroup", "FunctionGroup", "DetailGroup"})
            QVERIFY(page().form.findChild<QButtonGroup *>(group)->exclusive());
        QCOMPARE(page().form.findChild<QButtonGroup *>("ButtonGroup")->buttons().size(), 12);
        QCOMPARE(page().form.findChild<QButtonGroup *>("FunctionGroup")->buttons().size(), 17);
        QCOMPARE(page().form.findChild<QButtonGroup *>("DetailGroup")->buttons().size(), 41);
    }

    void eachWidgetStandsOnItsPage_data()
    {
        QTest::addColumn<QStringList>("widgets");
        for (const PanelRow &row : PanelWidgets)
            QTest::newRow(row.page) << QString(row.widgets).split(' ');
    }
    void eachWidgetStandsOnItsPage()
    {
        QFETCH(QStringList, widgets);
        auto *const ground = page().form.findChild<QWidget *>(QTest::currentDataTag());
        QStringList found;
        for (const ActionButton *each : ground->findChildren<ActionButton *>())
            found << each->objectName();
        QCOMPARE(found, widgets);
    }

    void everyTextOfTheLanguageFits()
    {
        for (const ActionButton *each : page().form.findChildren<ActionButton *>())
            QVERIFY2(!each->isElided(), qPrintable(each->objectName() + ' ' + each->text()));
    }

    // ---- Showing a record

    void captionsFollowTheOddOrder()
    {
        page().show(ButtonPage::plainRecord());
        QCOMPARE(page().captions(),
                 QStringList({"Left button", "Right button", "Middle button", "Forward button", "Back button",
                              "Next DPI stage", "DPI up", "DPI down", "Next report rate", "Next report rate",
                              "Rapid fire", "Disabled"}));
    }

    void aButtonThatDoesNotExistIsNotShown()
    {
        const FlashDataMap map = ButtonPage::plainRecord();
        page().show(map);
        const QStringList before = page().captions();
        for (const int button : {-1, 12, 15, 16, 1000, INT_MIN, INT_MAX}) {
            QVERIFY(!ButtonList::rowOf(button));
            page().form.ShowBinding(button, 7, 0, 0, map);
            QCOMPARE(page().captions(), before);
        }
        QCOMPARE(ButtonList::rowOf(4).value_or(99), std::size_t(3)); // the fourth row
        page().form.ShowBinding(4, 7, 0, 0, map);
        QCOMPARE(page().captions()[3], "Next report rate");
    }

    void theSensorsCodesAreReadWithThePage()
    {
        end();
        QFile header(applicationFolder() + "/driver_sensor.h");
        QVERIFY(header.open(QIODevice::WriteOnly));
        header.write("#define SENSOR_3395_DPI_400\t0x55\n");
        header.close();
        begin();
        QVERIFY(header.remove());
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[0] = {10, 0x55, 0};
        page().show(map);
        QVERIFY2(page().captions()[0].contains("400"), qPrintable(page().captions()[0]));
    }

    void aButtonAboveTheModelsKeepsItsCaption()
    {
        page().show(ButtonPage::plainRecord());
        SelectedDevice::set(fixture::info("dev", Receiver8K, 1));
        page().show(FlashDataMap{});
        QCOMPARE(page().button("BackMusic")->text(), "Disabled");
        QCOMPARE(page().button("Button7")->text(), "DPI up");
    }

    void whatIsNoBindingKeepsTheCaption_data()
    {
        QTest::addColumn<int>("actionClass");
        QTest::addColumn<int>("first");
        QTest::newRow("mouse 3") << 1 << 3;
        QTest::newRow("dpi 0") << 2 << 0;
        QTest::newRow("scroll 3") << 3 << 3;
        QTest::newRow("light 2") << 8 << 2;
        QTest::newRow("vertical 0") << 11 << 0;
        QTest::newRow("class 12") << 12 << 1;
        QTest::newRow("class 255") << 255 << 255;
    }
    void whatIsNoBindingKeepsTheCaption()
    {
        QFETCH(int, actionClass);
        QFETCH(int, first);
        page().show(ButtonPage::plainRecord());
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[3] = {uint8_t(actionClass), uint8_t(first), 0};
        page().show(map);
        QCOMPARE(page().button("TopMusic")->text(), "Back button");
    }

    void showsTheRestOfTheRecord()
    {
        QSignalSpy sleep(PostMsg::instance(), &PostMsg::SigLightToFrom);
        FlashDataMap map = ButtonPage::plainRecord();
        map.StopCloseTime = 30;
        map.DebounceTime = 12;
        page().show(map);
        QCOMPARE(sleep.count(), 1);
        QCOMPARE(sleep[0][0].toInt(), 300);
        QCOMPARE(page().form.findChild<QComboBox *>("Debunce")->currentIndex(), 12);
        QVERIFY(!ButtonPageBusy);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aReadFromTheDeviceMarksThePageLoaded()
    {
        fixture::emitOnOtherThread(
            [] { emit PostMsg::instance()->SigUpDataLightUIButton(ButtonPage::plainRecord()); });
        QVERIFY(ButtonPageLoaded);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    void anImportDoesNotMarkThePageLoaded()
    {
        emit PostMsg::instance()->SigUpDataButtonUIC(ButtonPage::plainRecord());
        QVERIFY(!ButtonPageLoaded);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    void anyRecordIsPaintedWithoutAWrite()
    {
        std::mt19937 random(5);
        FlashDataMap map{};
        auto *const list = page().form.findChild<QWidget *>("scrollArea_11");
        QImage canvas(page().form.size(), QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < 10000; ++i) {
            alter(map, random);
            page().show(map);
            list->render(&canvas);
        }
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!ButtonPageBusy);
    }

    void anyRecordIsOpenedWithoutAWrite()
    {
        std::mt19937 random(6);
        FlashDataMap map{};
        QImage canvas(page().form.size(), QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < 100; ++i) {
            alter(map, random);
            map.KeyBindings[0] = map.KeyBindings[i % 11 + 1] = {1, 1, 0}; // the only one would not open
            page().show(map);
            for (const Row &row : ButtonPageRows) {
                page().click(row.caption);
                page().form.render(&canvas);
                page().leave();
            }
        }
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!ButtonPageBusy);
    }

    // ---- Texts

    void textsComeFromTheLanguage()
    {
        const std::pair<const char *, const char *> texts[] = {
            {"OutputData", "Export"},   {"ImportData", "Import"},     {"DPI_2", "Next report rate"},
            {"DPI_9", "Lighting"},      {"DPI_12", "Media and apps"}, {"Mute", "Stop playback"},
            {"Player", "Media player"}, {"VolumeDown_5", "Email"},    {"VolumeUp_21", "1200"},
            {"Number10", "10"},
        };
        for (const auto &[name, text] : texts)
            QCOMPARE(page().button(name)->text(), text);
    }

    // Without texts the built-in ones come back.
    void anotherLanguageShowsOtherCaptions()
    {
        DeviceRecord::edit([](FlashDataMap &map) { map = ButtonPage::plainRecord(); });
        MouseOnline = true;
        page().show(ButtonPage::plainRecord());
        {
            const fixture::WithoutTexts bare;
            page().setLanguage(0);
            QCOMPARE(page().button("FireKey")->text(), QString::fromUtf8("左键"));
            QCOMPARE(page().button("StartPause")->text(), QString::fromUtf8("前进键"));
            QCOMPARE(page().button("Mute")->text(), QString::fromUtf8("停止播放"));
        }
        page().setLanguage(3);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
        page().setLanguage(0);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aMouseThatIsAwayWithoutAnImageIsRelabelled()
    {
        page().show(ButtonPage::plainRecord());
        {
            const fixture::WithoutTexts bare;
            page().setLanguage(0);
            QCOMPARE(page().button("FireKey")->text(), QString::fromUtf8("左键"));
        }
        page().setLanguage(0);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    void aMouseThatIsAwayIsRelabelledFromItsImage()
    {
        FlashDataMap kept = ButtonPage::plainRecord();
        kept.KeyBindings[1] = {9, 0, 0};
        ImageCacheWrite(SelectedDevice::cacheName(), kept);
        page().show(ButtonPage::plainRecord());
        MouseOnline = false;
        page().setLanguage(0);
        QCOMPARE(page().button("RightKey")->text(), "Next profile");
        MouseOnline = true;
        DeviceRecord::edit([](FlashDataMap &map) { map = ButtonPage::plainRecord(); });
        page().setLanguage(0);
        QCOMPARE(page().button("RightKey")->text(), "Right button");
    }
};

TEST_CLASS(tst_Buttoninterface, ButtonPageSetUp)

#include "tst_buttoninterface.moc"
