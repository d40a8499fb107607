// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The lift-off distance with two and with three heights: what a choice writes, what is shown of a record,
// and the way back.
#include "presentation/language/LanguageTables.h"
#include "sensor/SensorLOD.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>

class tst_SensorLOD : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SensorLOD> panel;
    FakeHidUsb &fake = FakeHidUsb::instance();

    QComboBox *box() const { return panel->findChild<QComboBox *>("LOD"); }
    QStringList items() const
    {
        QStringList texts;
        for (int i = 0; i < box()->count(); ++i)
            texts << box()->itemText(i);
        return texts;
    }
    void offer(int count)
    {
        if (count == 3)
            panel->AddSmallLod();
    }
    // One step with the keyboard, from the neighbour.
    void choose(int index)
    {
        const int neighbour = index == 0 ? 1 : index - 1;
        {
            const QSignalBlocker silent(box());
            box()->setCurrentIndex(neighbour);
        }
        QTest::keyClick(box(), index < neighbour ? Qt::Key_Up : Qt::Key_Down);
    }
    static void eachChoice()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("byte");
        QTest::addColumn<QString>("text");
        QTest::newRow("2: 1mm") << 2 << 0 << 1 << "1mm";
        QTest::newRow("2: 2mm") << 2 << 1 << 2 << "2mm";
        QTest::newRow("3: 0.7mm") << 3 << 0 << 3 << "0.7mm";
        QTest::newRow("3: 1mm") << 3 << 1 << 1 << "1mm";
        QTest::newRow("3: 2mm") << 3 << 2 << 2 << "2mm";
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void init()
    {
        fixture::beginWithDevice();
        panel = std::make_unique<SensorLOD>();
        panel->show();
    }

    void choiceWritesTheByteAlone_data() { eachChoice(); }
    void choiceWritesTheByteAlone()
    {
        QFETCH(int, count);
        QFETCH(int, index);
        QFETCH(int, byte);
        QFETCH(QString, text);
        offer(count);
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddLOD);
        choose(index);
        FlashDataMap record{};
        record.LiftOffDistance = uint8_t(byte);
        const FlashDataMap written = DeviceRecord::copy();
        QCOMPARE(memcmp(&written, &record, sizeof record), 0);
        QCOMPARE(int(fake.updates().size()), 1);
        QCOMPARE(box()->currentText(), text);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown[0][0].toString(), text);
        // The value is the one to go back to.
        fake.setOnline("dev", false);
        QTest::keyClick(box(), index == 0 ? Qt::Key_Down : Qt::Key_Up);
        QCOMPARE(box()->currentText(), text);
    }

    void smallHeightComesAndGoes()
    {
        const QStringList two = {"1mm", "2mm"};
        const QStringList three = {"0.7mm", "1mm", "2mm"};
        QCOMPARE(items(), two);
        panel->RemoveSmallLod();
        QCOMPARE(items(), two);
        panel->AddSmallLod();
        QCOMPARE(items(), three);
        panel->AddSmallLod();
        QCOMPARE(items(), three);
        panel->SetLod(2);
        panel->RemoveSmallLod(); // the shown height itself goes
        QCOMPARE(items(), two);
        QVERIFY(fake.calls().empty());
    }

    // With the interface armed, since that is how it stands when a page is painted.
    void showsEveryByte_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("2") << 2;
        QTest::newRow("3") << 3;
    }
    void showsEveryByte()
    {
        QFETCH(int, count);
        offer(count);
        for (int byte = 0; byte < 256; ++byte) {
            panel->SetLod(0);
            QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddLOD);
            panel->SetLod(byte - 1);
            const bool known = byte >= 1 && byte <= count;
            if (count == 2) {
                QCOMPARE(box()->currentIndex(), known ? byte - 1 : -1);
                QCOMPARE(shown.count(), 1);
                QCOMPARE(shown[0][0].toString(), QString(byte == 1 ? "1mm" : "2mm"));
            } else {
                QCOMPARE(box()->currentIndex(), byte == 3 ? 0 : byte == 2 ? 2 : 1);
                QCOMPARE(shown.count(), known ? 1 : 0);
                if (known)
                    QCOMPARE(shown[0][0].toString(), box()->currentText());
            }
        }
        QVERIFY(fake.calls().empty());
    }

    void goingBackToAHeightThatIsNotOffered()
    {
        panel->SetLod(2);
        fake.setOnline("dev", false);
        box()->setCurrentIndex(0);
        QCOMPARE(box()->currentIndex(), -1);
        panel->AddSmallLod();
        panel->SetLod(77);
        box()->setCurrentIndex(1);
        QCOMPARE(box()->currentIndex(), -1);
    }

    void textsAndTip()
    {
        auto *tip = panel->findChild<QLabel *>("tip");
        auto *caption = panel->findChild<QLabel *>("caption");
        for (int language = 7; language >= 0; --language) {
            panel->SlotAllLanguage(language);
            QCOMPARE(tip->pos(), QPoint(50, 1));
        }
        QVERIFY(!box()->accessibleName().isEmpty());
        QVERIFY(!box()->accessibleDescription().isEmpty());
        QVERIFY(tip->toolTip().contains(box()->accessibleDescription()));
        QVERIFY(QFontMetrics(caption->font()).horizontalAdvance(caption->text()) <= caption->width());
        QVERIFY(!tip->geometry().intersects(caption->geometry()));
        panel->setLodEnabled(false);
        QVERIFY(!box()->isEnabled());
        panel->setLodEnabled(true);
        QVERIFY(box()->isEnabled());
        QCOMPARE(panel->size(), QSize(131, 61));
    }
};

TEST_CLASS(tst_SensorLOD, fixture::ShippedLooks)

#include "tst_sensorlod.moc"
