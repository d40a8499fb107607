// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rule of an edit, for every control that writes: it writes its bytes and no others; a mouse that does
// not answer gets nothing, and the control goes back; unarmed or busy, nothing is written. And the sliders
// across a loss of the mouse in the middle of a press.
#include "presentation/Notices.h"
#include "tests/support/TestMain.h"
#include "tests/widget/app/EditRows.h"
#include "tests/widget/app/Wheel.h"

using namespace edits;

namespace
{

// Ways in which a pressed slider misses its release.
const struct {
    const char *name;
    void (*lose)(QWidget *slider, const std::function<void()> &release);
} losses[] = {
    {"behind a modal window",
     [](QWidget *slider, const std::function<void()> &release) {
         QDialog notice(slider->window());
         notice.open();
         release();
     }},
    {"while hidden",
     [](QWidget *slider, const std::function<void()> &release) {
         slider->hide();
         release();
         slider->show();
     }},
    {"in another program",
     [](QWidget *slider, const std::function<void()> &) {
         const QPoint place(slider->width() / 2, slider->height() / 2);
         QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
         QCoreApplication::sendEvent(slider, &move);
     }},
};

// Repeats its step as a slider does under a lasting press.
struct RepeatingSlider : QSlider {
    RepeatingSlider() { setRepeatAction(SliderSingleStepAdd); }
};

} // namespace

class tst_EditContract : public QObject
{
    Q_OBJECT

private:
    const std::vector<EditRow> rows = allRows();
    FakeHidUsb &fake = FakeHidUsb::instance();
    Page page;
    QTimer closer; // of the warnings of a short debounce time
    int warnings = 0;

    void eachRow() const
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < rows.size(); ++i)
            QTest::addRow("%03d %s", int(i), rows[i].name.constData()) << int(i);
    }
    // The record differs from the page's in what no page here shows, so that a write of the page's own copy
    // does not pass for one of the record.
    static FlashDataMap recordOf(const EditRow &row)
    {
        FlashDataMap map = editedRecord();
        row.start(map);
        std::memset(map.Untouched17, 0xA5, sizeof map.Untouched17);
        map.KeyBindings[3] = {1, 2, 3};
        return map;
    }
    void paint(const EditRow &row) const
    {
        FlashDataMap map = editedRecord();
        row.start(map);
        row.host->paint(page.get(), map);
    }
    void open(const EditRow &row)
    {
        fixture::clean();
        fake.addDevice(fixture::device("dev", uint8_t(6 + row.model), Receiver8K));
        SensorFixture::choose(row.model, Receiver8K);
        page = row.host->make();
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        page->show();
        QCoreApplication::processEvents();
        fake.clearCalls();
        warnings = 0;
    }
    QWidget *control(const EditRow &row) const
    {
        auto *found = page->findChild<QWidget *>(QString::fromLatin1(row.control));
        if (!found)
            qFatal("no %s", row.control.constData());
        return found;
    }
    void act(const EditRow &row) const { row.act(control(row)); }
    // The explanation of a setting follows the focus.
    static bool isHelp(const QWidget *widget)
    {
        return widget->parentWidget() && widget->parentWidget()->inherits("SettingHelp");
    }
    // Everything that the page shows of its values. The colour dialog is a window of its own.
    QStringList state() const
    {
        QStringList all;
        for (const QWidget *widget : page->findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            const bool isFade = name.startsWith(QLatin1String("Fade")); // of an edge, by what is scrolled
            if (widget->window() != page->window() || widget->inherits("QTabBar") || isHelp(widget) || isFade)
                continue;
            if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name, button->text()).arg(button->isChecked());
            else if (const auto *box = qobject_cast<const QComboBox *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name).arg(box->currentIndex()).arg(box->isEnabled());
            else if (const auto *slider = qobject_cast<const QSlider *>(widget))
                all << QStringLiteral("%1 %2").arg(name).arg(slider->value());
            else if (const auto *spin = qobject_cast<const QSpinBox *>(widget))
                all << QStringLiteral("%1 %2").arg(name).arg(spin->value());
            else if (const auto *label = qobject_cast<const QLabel *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name, label->text()).arg(label->isVisible());
        }
        return all;
    }
    bool longRange() const { return fake.device("dev").longRange; }
    static bool same(const FlashDataMap &a, const FlashDataMap &b) { return !std::memcmp(&a, &b, sizeof a); }
    void expectWritten(const EditRow &row) const
    {
        FlashDataMap wanted = recordOf(row);
        row.written(wanted);
        QVERIFY(same(DeviceRecord::copy(), wanted));
        QCOMPARE(longRange(), row.receiver);
        if (row.receiver) {
            QVERIFY(fake.updates().empty());
            return;
        }
        QVERIFY(!fake.updates().empty());
        QVERIFY(row.several || fake.updates().size() == 1);
        QVERIFY(same(fake.updates().back(), wanted));
    }
    void expectNothingWritten(const EditRow &row) const
    {
        QVERIFY(fake.updates().empty());
        QVERIFY(same(DeviceRecord::copy(), recordOf(row)));
        QVERIFY(!longRange());
    }

private slots:
    void initTestCase()
    {
        connect(&closer, &QTimer::timeout, this, [this] {
            if (auto *notice = dynamic_cast<LessThree *>(QApplication::activeModalWidget())) {
                ++warnings;
                notice->on_NewHong_clicked();
            }
        });
        closer.start(1);
    }
    void cleanup() { page.reset(); }

    void itWritesItsBytesAlone_data() { eachRow(); }
    void itWritesItsBytesAlone()
    {
        QFETCH(int, index);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        act(row);
        expectWritten(row);
    }

    void aSilentMouseTakesItBack_data() { eachRow(); }
    void aSilentMouseTakesItBack()
    {
        QFETCH(int, index);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        const QStringList before = state();
        fake.setOnline("dev", false);
        const PostMsg *hub = PostMsg::instance();
        QSignalSpy notice(hub, &PostMsg::SigMouseOffLineo), mode(hub, &PostMsg::SigHideModel),
            lod(hub, &PostMsg::SigAddLOD), debounce(hub, &PostMsg::SigDebunce),
            performance(hub, &PostMsg::Sig20KOpen), dpi(hub, &PostMsg::SigAddSensor);
        act(row);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        QCOMPARE(notice.count(), row.notices);
        for (const QList<QVariant> &kind : notice)
            QCOMPARE(kind[0].toInt(), 0);
        QCOMPARE(mode.count() + lod.count() + debounce.count() + performance.count() + dpi.count(), 0);
        QCOMPARE(warnings, 0);
        // A slider is disabled until the page is filled again, and whoever moves it meanwhile, it stays.
        if (auto *slider = qobject_cast<QSlider *>(control(row))) {
            QVERIFY(!slider->isEnabled());
            if (row.host != &SensorHost) {
                slider->setValue(slider->maximum());
                slider->setValue(slider->minimum());
                QCOMPARE(state(), before);
                QCOMPARE(notice.count(), row.notices);
            }
            paint(row);
            QVERIFY(slider->isEnabled());
            QCOMPARE(state(), before);
        }
        fake.setOnline("dev", true);
        act(row); // and it works again
        expectWritten(row);
    }

    void unarmedItWritesNothing_data() { eachRow(); }
    void unarmedItWritesNothing()
    {
        QFETCH(int, index);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        UiArmed = false;
        act(row);
        if (!row.armed) {
            expectWritten(row);
            return;
        }
        expectNothingWritten(row);
        QVERIFY(row.asks || fake.calls().empty());
    }

    void itAsksForTheFlagOfItsPageAlone_data() { eachRow(); }
    void itAsksForTheFlagOfItsPageAlone()
    {
        QFETCH(int, index);
        const EditRow &row = rows[std::size_t(index)];
        for (const Busy busy : {&SensorPageBusy, &LightPageBusy, &ButtonPageBusy}) {
            open(row);
            *busy = true;
            act(row);
            *busy = false;
            if (busy == row.busy) {
                expectNothingWritten(row);
                QVERIFY(row.asks || fake.calls().empty());
            } else {
                expectWritten(row);
            }
        }
    }

    void aWheelWritesNothing_data() { eachRow(); }
    void aWheelWritesNothing()
    {
        QFETCH(int, index);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        const QStringList before = state();
        for (const int notches : {1, -2, 1})
            turnWheel(control(row), notches);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        QVERIFY(fake.calls().empty());
        act(row);
        expectWritten(row);
    }

    // ---- The sliders across a loss of the mouse

    void aPointerThatPassesAfterALossMovesNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("beforeThePress");
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (const bool before : {false, true})
                if (rows[i].several)
                    QTest::addRow("%s %s", rows[i].name.constData(), before ? "lost before" : "lost in it")
                        << int(i) << before;
    }
    void aPointerThatPassesAfterALossMovesNothing()
    {
        QFETCH(int, index);
        QFETCH(bool, beforeThePress);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const int x = pointer.ownX();
        const int far = slider->width() - 20;
        fake.setOnline("dev", !beforeThePress);
        pointer.press(x);
        fake.setOnline("dev", false);
        pointer.move(far);
        QVERIFY(!slider->isEnabled());
        QVERIFY(!slider->isSliderDown());
        pointer.release(far);
        fake.setOnline("dev", true);
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        QVERIFY(slider->isEnabled() && !slider->signalsBlocked());
        const QStringList before = state();
        fake.clearCalls();
        for (const int to : {far, x, 5, far})
            pointer.hover(to);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        // The next press is an edit again, and its release ends it.
        row.act(slider);
        expectWritten(row);
        const std::size_t writes = fake.updates().size();
        pointer.hover(5);
        QCOMPARE(fake.updates().size(), writes);
    }

    // However the release is lost.
    void aPressWithoutAReleaseIsOver_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("loss");
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (std::size_t loss = 0; loss < std::size(losses); ++loss)
                if (rows[i].several)
                    QTest::addRow("%s %s", rows[i].name.constData(), losses[loss].name)
                        << int(i) << int(loss);
    }
    void aPressWithoutAReleaseIsOver()
    {
        QFETCH(int, index);
        QFETCH(int, loss);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const int x = pointer.ownX();
        const int far = slider->width() - 20;
        pointer.press(x);
        QVERIFY(slider->isSliderDown());
        losses[loss].lose(slider, [&] { pointer.release(far); });
        QVERIFY(!slider->isSliderDown());
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        const QStringList before = state();
        fake.clearCalls();
        for (const int to : {far, x, 5, far})
            pointer.hover(to);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        row.act(slider);
        expectWritten(row);
    }

    // A press beside the handle repeats its step for as long as it lasts.
    void aPressOnTheGrooveThatIsLostRepeatsNothing_data() { aPointerThatPassesAfterALossMovesNothing_data(); }
    void aPressOnTheGrooveThatIsLostRepeatsNothing()
    {
        QFETCH(int, index);
        QFETCH(bool, beforeThePress);
        const EditRow &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const QStringList before = state();
        fake.setOnline("dev", !beforeThePress);
        pointer.press(slider->width() - 5);
        if (!beforeThePress) { // and the page is taken away under the pointer
            QVERIFY(slider->value() > slider->minimum());
            page->setEnabled(false);
            page->setEnabled(true);
        } else {
            QCOMPARE(state(), before);
            QVERIFY(!slider->isEnabled());
        }
        const int value = slider->value();
        fake.clearCalls();
        const RepeatingSlider other; // begins after this one and so repeats after it
        QTRY_VERIFY(other.value() > other.minimum());
        QCOMPARE(slider->value(), value);
        QVERIFY(fake.updates().empty());
        pointer.release(slider->width() - 5);
    }
};

TEST_CLASS(tst_EditContract, SensorSetUp)

#include "tst_editcontract.moc"
