// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The debounce time: what a choice writes and when it warns.
#include "binding/DebounceTime.h"
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>

class tst_DebounceTime : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DebounceTime> panel;
    FakeHidUsb &fake = FakeHidUsb::instance();
    QTimer closer; // of the notices
    QVector<QPoint> notices;
    QSize noticeSize;

    QComboBox *box() const { return panel->findChild<QComboBox *>("Debunce"); }
    void choose(int index)
    {
        const int neighbour = index == 0 ? 1 : index - 1;
        {
            const QSignalBlocker silent(box());
            box()->setCurrentIndex(neighbour);
        }
        QTest::keyClick(box(), index < neighbour ? Qt::Key_Up : Qt::Key_Down);
    }
    static void eachTime()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < DebounceItems; ++i)
            QTest::addRow("%d ms", i) << i;
    }

private slots:
    void initTestCase()
    {
        LoadLanguageTables();
        connect(&closer, &QTimer::timeout, this, [this] {
            if (auto *notice = dynamic_cast<LessThree *>(QApplication::activeModalWidget())) {
                notices << notice->pos();
                noticeSize = notice->size();
                notice->on_NewHong_clicked();
            }
        });
        closer.start(5);
    }
    void init()
    {
        fixture::beginWithDevice();
        notices.clear();
        panel = std::make_unique<DebounceTime>();
        panel->move(500, 300);
        panel->show();
    }

    void choiceWritesTheByteAloneAndWarnsOfAShortTime_data() { eachTime(); }
    void choiceWritesTheByteAloneAndWarnsOfAShortTime()
    {
        QFETCH(int, index);
        panel->SlotAllLanguage(0);
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigDebunce);
        choose(index);
        FlashDataMap record{};
        record.DebounceTime = uint8_t(index);
        const FlashDataMap written = DeviceRecord::copy();
        QCOMPARE(memcmp(&written, &record, sizeof record), 0);
        QCOMPARE(int(fake.updates().size()), 1);
        QCOMPARE(box()->currentIndex(), index);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown[0][0].toString(), QString("%1ms").arg(index));
        QCOMPARE(notices.size(), index < 8 ? 1 : 0);
        if (index < 8) {
            const QPoint corner = panel->mapToGlobal(QPoint(0, 0));
            const QSize room = panel->size() - noticeSize;
            QCOMPARE(notices[0], corner + QPoint(room.width() / 2 - 409, room.height() / 2 - 202));
        }
        // It is the one to go back to.
        fake.setOnline("dev", false);
        box()->setCurrentIndex((index + 1) % DebounceItems);
        QCOMPARE(box()->currentIndex(), index);
    }

    // The page that carries the panel fills itself: no notice, whatever the time.
    void busyPageDoesNotWarn()
    {
        ButtonPageBusy = true;
        choose(2);
        ButtonPageBusy = false;
        QVERIFY(notices.isEmpty());
    }

    void showsEveryByte()
    {
        panel->SlotAllLanguage(0);
        for (int byte = 0; byte < 256; ++byte) {
            QSignalSpy shown(PostMsg::instance(), &PostMsg::SigDebunce);
            panel->SetDebounce(byte);
            QCOMPARE(box()->currentIndex(), byte < DebounceItems ? byte : -1);
            QCOMPARE(shown.count(), 1);
            QCOMPARE(shown[0][0].toString(), byte < DebounceItems ? QString("%1ms").arg(byte) : QString());
        }
        QVERIFY(fake.calls().empty());
        QVERIFY(notices.isEmpty());
    }

    void texts()
    {
        const QStringList first = {"1ms", "0", "2ms", "3", "4", "5", "6", "7"};
        for (int i = 0; i < DebounceItems; ++i)
            QCOMPARE(box()->itemText(i), i < first.size() ? first[i] : QString::number(i));
        panel->SlotAllLanguage(0);
        QCOMPARE(box()->count(), DebounceItems);
        for (int i = 0; i < DebounceItems; ++i)
            QCOMPARE(box()->itemText(i), QString("%1ms").arg(i));
        QCOMPARE(box()->accessibleName(), QString("Debounce time"));
        QVERIFY(fake.calls().empty());
    }
};

TEST_CLASS(tst_DebounceTime, fixture::ShippedLooks)

#include "tst_debouncetime.moc"
