// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The wheel: over every control of every page and dialog it changes nothing and takes no focus; what lies
// under the control scrolls, and so does an open list.
#include "app/DialogMain.h"
#include "lighting/InputPic.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "presentation/ColorDialog.h"
#include "presentation/FileDialog.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/FireKey.h"
#include "tests/widget/Fixture.h"
#include "tests/widget/app/Wheel.h"

#include <QAbstractItemView>
#include <QColorDialog>
#include <QFileDialog>
#include <QScrollArea>
#include <QScrollBar>

namespace
{

int valueOf(const QWidget *control)
{
    if (const auto *box = qobject_cast<const QComboBox *>(control))
        return box->currentIndex();
    return control->property("value").toInt();
}

// Between its ends, so that a step either way would show.
void centre(QWidget *control)
{
    if (auto *box = qobject_cast<QComboBox *>(control)) {
        box->addItems({"a", "b", "c"});
        box->setCurrentIndex(1);
        return;
    }
    control->setProperty("minimum", 0);
    control->setProperty("maximum", 10);
    control->setProperty("value", 5);
}

template <typename Control> int checkAll(const QWidget &window)
{
    const auto controls = window.findChildren<Control *>();
    for (Control *control : controls) {
        const QByteArray name = control->objectName().toLatin1();
        const QSignalBlocker silent(control);
        control->setEnabled(true);
        centre(control);
        const int before = valueOf(control);
        for (const int notches : {1, -1, 3, -3}) {
            turnWheel(control, notches);
            if (valueOf(control) != before) {
                qWarning() << "moved by a wheel:" << name;
                return -1;
            }
        }
        if ((control->focusPolicy() & Qt::WheelFocus) == Qt::WheelFocus) {
            qWarning() << "focused by a wheel:" << name;
            return -1;
        }
    }
    return controls.size();
}

} // namespace

class tst_Wheel : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture::clean(); }

    void overEveryControlItChangesNothing()
    {
        DialogMain window;
        window.show();
        QTRY_VERIFY(FakeHidUsb::instance().idle());
        QVERIFY(checkAll<QComboBox>(window) >= 8);
        QVERIFY(checkAll<QSlider>(window) >= 4);
        QVERIFY(checkAll<QSpinBox>(window) >= 3);
    }

    // OK binds what the dialog shows.
    void inTheDialogsThatAskForANumberItChangesNothing()
    {
        FireKey fireKey;
        AddDelayTime delay;
        fireKey.show();
        delay.show();
        QCOMPARE(checkAll<QSpinBox>(fireKey), 2);
        QCOMPARE(checkAll<QSpinBox>(delay), 1);
    }

    void inTheDialogsThatNothingOpensItChangesNothing()
    {
        LedInfo receiver;
        InputPicB screen;
        LightModeSet light;
        int controls = 0;
        for (QDialog *dialog : std::initializer_list<QDialog *>{&receiver, &screen, &light}) {
            dialog->show();
            for (const int found :
                 {checkAll<QComboBox>(*dialog), checkAll<QSlider>(*dialog), checkAll<QSpinBox>(*dialog)}) {
                QVERIFY(found >= 0);
                controls += found;
            }
        }
        QVERIFY(controls > 0);
    }

    // The colour is written when the dialog is accepted.
    void inTheToolkitsDialogsItChangesNothing()
    {
        const std::unique_ptr<QColorDialog> colors(makeColorDialog(nullptr));
        colors->show();
        QVERIFY(checkAll<QSpinBox>(*colors) >= 6);
        int boxes = 0;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            boxes = checkAll<QComboBox>(*dialog);
            dialog->reject();
        });
        filedialog::askForFile(nullptr, "File(*.bin)");
        QCOMPARE(boxes, 2);
    }

    void whatLiesUnderTheControlScrolls()
    {
        QScrollArea area;
        auto *page = new QWidget;
        page->resize(200, 2000);
        MyConmboBox box(page);
        MySlider slider(page);
        MySpinBox spinBox(page);
        area.setWidget(page);
        area.resize(220, 200);
        area.show();
        const std::initializer_list<QWidget *> controls = {&box, &slider, &spinBox};
        int scrolled = 0;
        for (QWidget *control : controls) {
            centre(control);
            const int before = valueOf(control);
            turnWheel(control, -1);
            turnWheel(control, -1);
            QCOMPARE(valueOf(control), before);
            QVERIFY(area.verticalScrollBar()->value() > scrolled);
            scrolled = area.verticalScrollBar()->value();
        }
    }

    void anOpenListScrolls()
    {
        MyConmboBox box;
        for (int i = 0; i < 20; ++i)
            box.addItem(QString::number(i));
        styleComboBox(&box, style::pictureFolder(QStringLiteral("Sensor")));
        box.show();
        box.showPopup();
        QTRY_VERIFY(box.view()->isVisible());
        turnWheel(box.view()->viewport(), -1);
        QVERIFY(box.view()->verticalScrollBar()->value() > 0);
        QCOMPARE(box.currentIndex(), 0);
        box.hidePopup();
    }
};

TEST_CLASS(tst_Wheel, fixture::ShippedProduct)

#include "tst_wheel.moc"
