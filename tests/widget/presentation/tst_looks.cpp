// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The style sheets letter by letter, and the small widgets.
#include "presentation/FocusRing.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace
{

struct SmallCatalogue {
    const ProductFolder product{smallCatalogue()};
};
// Without the skin, for which the test has a folder of its own.
struct BareCatalogue : private SmallCatalogue, testmain::WidgetApplication {
    using WidgetApplication::WidgetApplication;
};

class DeafToLoss : public QObject
{
    bool eventFilter(QObject *, QEvent *event) override { return event->type() == QEvent::FocusOut; }
};

} // namespace

class tst_Looks : public QObject
{
    Q_OBJECT

private:
    static void drawMark(const QString &file, const QColor &color)
    {
        QPixmap mark(16, 16);
        mark.fill(color);
        QVERIFY(mark.save(file));
    }
    static int pixelsOf(QWidget *widget, const QColor &color)
    {
        const QImage image = widget->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == color;
        return count;
    }

    // Calls `look` as the widget is shown, after what filters the whole application.
    template <typename Look> static QObject *whenShown(QWidget *widget, Look look)
    {
        class Filter : public QObject
        {
        public:
            Filter(QWidget *shown, Look told) : look_(told) { shown->installEventFilter(this); }

        protected:
            bool eventFilter(QObject *, QEvent *event) override
            {
                if (event->type() == QEvent::Show)
                    look_();
                return false;
            }

        private:
            Look look_;
        };
        return new Filter(widget, look);
    }

    static QWidget *ringIn(QWidget *window) { return window->findChild<QWidget *>("FocusOutline"); }
    static QRect placeIn(QWidget *window, const QWidget *widget)
    {
        return {widget->mapTo(window, QPoint()), widget->size()};
    }

private slots:
    void sheets_data()
    {
        QTest::addColumn<QString>("made");
        QTest::addColumn<QString>("wanted");
        const QString p = "/app/Picture/Dialog/";
        const QString c = "255,0,0";
        const QString url = "url(/app/Picture/Dialog/";
        const QString centred = "background-position:center;background-repeat:no-repeat;";
        QTest::newRow("window") << style::windowBackground(p, "frameChange")
                                << "#frameChange{border-image: " + url + "MainBack.png);}";
        QTest::newRow("dialog") << style::dialogBackground(p, "frame_2")
                                << "#frame_2{border:0px;" + centred + "background-image: " + url +
                                       "BackGround.png);}";
        QTest::newRow("title button")
            << style::titleButton(p, "Close")
            << "QToolButton{border:0px;background-image: " + url +
                   "Close.png);background-position:center;background-repeat:no-repeat;}QToolButton:hover{"
                   "background-image: " +
                   url + "CloseHover.png);}QToolButton:pressed{background-image: " + url +
                   "CloseClick.png);}";
        QTest::newRow("title button, disabled")
            << style::titleButtonOff(p, "Close")
            << "QToolButton:disabled{background-image: " + url + "CloseOff.png);}";
        QTest::newRow("arrow") << style::arrow(p, "Right")
                               << "QToolButton{border-image: " + url +
                                      "Right.png);}QToolButton:hover{border-image: " + url +
                                      "RightClick.png);}";
        QTest::newRow("text button") << style::textButton(p, c, "Confirm")
                                     << "QToolButton{border:0px;" + centred +
                                            "color: rgb(255,0,0;);border-image: " + url +
                                            "Confirm.png);}QToolButton:pressed{border-image: " + url +
                                            "ConfirmClick.png); }QToolButton:hover:!pressed{border-image: " +
                                            url + "ConfirmHover.png);}";
        QTest::newRow("label") << style::label(c) << "QLabel{color: rgb(255,0,0;);}";
        QTest::newRow("label picture")
            << style::labelPicture(p, "Warn.png")
            << "QLabel{border:0px;" + centred + "background-image: " + url + "Warn.png);}";
        QTest::newRow("tile") << style::tile(p, "OnLine0.png")
                              << "QToolButton{border:0px;" + centred + "background-image: " + url +
                                     "OnLine0.png);color: rgb(255, 255, 255);}";
        QTest::newRow("check box")
            << style::checkBox(p, c).left(style::checkBox(p, c).indexOf("QCheckBox{outline"))
            << "QCheckBox{color: rgb(255,0,0;);}QCheckBox::indicator:checked {image: " + url +
                   "CheckBoxCheck.png);}QCheckBox::indicator:unchecked {image: " + url + "CheckBox.png);}";
        QTest::newRow("combo list") << style::comboList(c).left(
                                           style::comboList(c).indexOf("QListView::item:selected{color"))
                                    << "QListView::item:selected{background-color: "
                                       "rgb(255,0,0);}QListView::item:hover{background-color: "
                                       "rgb(255,0,0);}";
        QTest::newRow("section title") << style::sectionTitle(p, "TitleButton_2")
                                       << "#TitleButton_2{border-image: " + url + "Title.png);}";
        QTest::newRow("flat link") << style::flatLink(c)
                                   << "QPushButton{border:none;background:transparent;color: rgb(255,0,0;);}";
        QTest::newRow("connection") << style::stretchedPicture(p, "OnLineUsb.png")
                                    << "QLabel{border-image: " + url + "OnLineUsb.png);}";
    }
    void sheets()
    {
        QFETCH(QString, made);
        QFETCH(QString, wanted);
        QCOMPARE(made, wanted);
    }

    void comboBoxBeginsWithTheTemplate()
    {
        QVERIFY(
            style::comboBox("/p/", "1,2,3", "4,5,6")
                .startsWith("QComboBox{border: 1px solid gray; color: rgb(1,2,3); border-image: "
                            "url(/p/ComboboxBack.png);}QComboBox::drop-down:button{border-radius:5px; "
                            "background:rgb(215,219, 222);} QComboBox::down-arrow{image: url(/p/Menu.png); "
                            "right: 8px; }QComboBox::down-arrow:on{ image: url(/p/MenuClicked.png);}"
                            "QComboBox QAbstractItemView::item{height:25px;}QComboBox QAbstractItemView "
                            "{outline: 0px solid gray; border: 1px  solid gray;color: rgb(4,5,6); "
                            "border-image: url(/p/ComboboxTextBack.png);selection-background-color: "
                            "rgb(4,5,6); }"));
    }

    void theArrowTellsWhetherTheBoxIsOpen()
    {
        const QTemporaryDir folder;
        drawMark(folder.filePath("Menu.png"), Qt::red);
        drawMark(folder.filePath("MenuClicked.png"), Qt::blue);
        MyConmboBox box;
        box.addItems({"one", "two"});
        box.resize(130, 30);
        styleComboBox(&box, folder.path() + '/');
        box.show();
        QCOMPARE(pixelsOf(&box, Qt::red), 16 * 16);
        QCOMPARE(pixelsOf(&box, Qt::blue), 0);
        box.showPopup();
        QCOMPARE(pixelsOf(&box, Qt::red), 0);
        QCOMPARE(pixelsOf(&box, Qt::blue), 16 * 16);
        box.hidePopup();
        QTRY_COMPARE(pixelsOf(&box, Qt::red), 16 * 16);
        box.setEnabled(false);
        QCOMPARE(pixelsOf(&box, Qt::red) + pixelsOf(&box, Qt::blue), 0);
    }

    // A folder may hold what looks like a mark of the templates.
    void foldersAreTakenAsTheyStand()
    {
        QCOMPARE(style::labelPicture("/a%1b%P/", "x.png").count("/a%1b%P/x.png"), 1);
    }

    void aColorThatIsNoneIsReplaced()
    {
        const QStringList parts = style::color("NoSuchColor").split(',');
        QCOMPARE(parts.size(), 3);
    }

    void sliderJumpsToThePress()
    {
        QWidget ground;
        MySlider slider(Qt::Horizontal, &ground);
        slider.resize(200, 20);
        slider.setRange(0, 100);
        QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(100, 10));
        QCOMPARE(slider.value(), 50);
        slider.setRange(10, 20);
        QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(199, 10));
        QCOMPARE(slider.value(), 19);
    }

    void comboBoxRemembersWhereItWasPressed()
    {
        MyConmboBox box;
        box.addItems({"one", "two", "three"});
        box.setCurrentIndex(1);
        QCOMPARE(box.pressedIndex(), -1);
        QMouseEvent press(QEvent::MouseButtonPress, {4, 4}, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&box, &press);
        box.hidePopup();
        box.setCurrentIndex(2);
        QCOMPARE(box.pressedIndex(), 1);
    }

    void toolButtonActsOnThePress()
    {
        MyToolButton button;
        button.setCheckable(true);
        QSignalSpy clicked(&button, SIGNAL(clicked(bool)));
        QTest::mousePress(&button, Qt::RightButton);
        QVERIFY(!button.isChecked());
        QTest::mousePress(&button, Qt::LeftButton);
        QVERIFY(button.isChecked());
        QTest::mouseRelease(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked[0][0].toBool(), false);
        QTest::mouseDClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.last()[0].toBool(), true);
    }

    void progressWalksToItsTargets()
    {
        MyProgressBar bar;
        bar.setRange(0, 10);
        bar.setValue(0);
        QList<int> seen;
        connect(&bar, &QProgressBar::valueChanged, &bar, [&seen](int value) { seen << value; });
        bar.addTarget(3);
        bar.addTarget(400);
        QTRY_VERIFY(!bar.isWalking());
        QCOMPARE(seen, (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
        bar.addTarget(2);
        QTRY_VERIFY(!bar.isWalking());
        QCOMPARE(bar.value(), 10);
    }

    void typingDoesNothingToAShowOnlyField()
    {
        MyLineEdit field;
        field.setText("A");
        QTest::keyClicks(&field, "bc");
        QTest::keyClick(&field, Qt::Key_Backspace);
        QCOMPARE(field.text(), QString("A"));
    }

    void theHandComesAndGoesWithThePointer()
    {
        MyButton button;
        QEvent enter(QEvent::Enter), leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &enter);
        QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
        QCoreApplication::sendEvent(&button, &leave);
        QCOMPARE(button.cursor().shape(), Qt::ArrowCursor);
    }

    void tileKnowsItsNumber()
    {
        mytoolButtonEnter tile;
        QCOMPARE(tile.deviceIndex(), -1);
        tile.setObjectName("btn12");
        QCOMPARE(tile.deviceIndex(), 12);
    }

    void focusRingFollowsTheKeyboardAlone()
    {
        FocusRing::install(Qt::green);
        auto ground = std::make_unique<QWidget>();
        ground->resize(300, 100);
        QToolButton first(ground.get());
        QToolButton second(ground.get());
        first.setGeometry(20, 20, 80, 30);
        second.setGeometry(150, 20, 80, 30);
        ground->show();
        QApplication::setActiveWindow(ground.get());
        second.setFocus(Qt::MouseFocusReason);
        QVERIFY(!ground->findChild<QWidget *>("FocusOutline"));
        first.setFocus(Qt::TabFocusReason);
        auto *outline = ground->findChild<QWidget *>("FocusOutline");
        QVERIFY(outline && outline->isVisible());
        QVERIFY(outline->geometry().contains(first.geometry()));
        first.move(20, 50);
        QVERIFY(outline->geometry().contains(first.geometry()));
        second.setFocus(Qt::MouseFocusReason);
        QVERIFY(!outline->isVisible());
        first.setFocus(Qt::TabFocusReason);
        QVERIFY(outline->isVisible());
        // As with a window that becomes active between two changes of the focus: the control hears nothing.
        DeafToLoss deaf;
        qApp->installEventFilter(&deaf);
        second.setFocusPolicy(Qt::NoFocus); // the focus has nowhere else to go
        first.setEnabled(false);
        QVERIFY(!outline->isVisible());
    }

    // The toolkit tells what a dialog begins with that Tab gave it the focus.
    void focusRingWaitsForTheFirstKey()
    {
        FocusRing::install(Qt::green);
        QDialog dialog;
        dialog.resize(300, 100);
        QToolButton button(&dialog);
        button.setGeometry(20, 20, 80, 30);
        button.setFocusPolicy(Qt::StrongFocus);
        button.setFocus();
        dialog.show();
        QVERIFY(!ringIn(&dialog) || !ringIn(&dialog)->isVisible());
        QApplication::setActiveWindow(&dialog);
        QVERIFY(button.hasFocus());
        QVERIFY(!ringIn(&dialog) || !ringIn(&dialog)->isVisible());
        button.clearFocus();
        button.setFocus(Qt::TabFocusReason);
        QVERIFY(ringIn(&dialog) && ringIn(&dialog)->isVisible());
    }

    // The control fills its panel, so that only what is around the panel has room for the ring.
    void focusRingIsNotCutByAPanel()
    {
        FocusRing::install(Qt::green);
        QWidget window;
        window.resize(300, 100);
        QFrame panel(&window);
        panel.setGeometry(40, 30, 80, 30);
        QToolButton button(&panel);
        button.setGeometry(0, 0, 80, 30);
        window.show();
        QApplication::setActiveWindow(&window);
        button.clearFocus(); // the window gave it the focus
        button.setFocus(Qt::TabFocusReason);
        QWidget *ring = ringIn(&window);
        QVERIFY(ring && ring->isVisible());
        const int room = 4;
        QCOMPARE(placeIn(&window, ring), QRect(40, 30, 80, 30).adjusted(-room, -room, room, room));
        panel.move(100, 50);
        QCOMPARE(placeIn(&window, ring), QRect(100, 50, 80, 30).adjusted(-room, -room, room, room));
        panel.hide();
        QVERIFY(!ring->isVisible());
    }

    // Neither while its list is open nor in the list's corners, which show what is under them.
    void focusRingComesBackFromAList()
    {
        FocusRing::install(Qt::green);
        QWidget window;
        window.resize(300, 200);
        QComboBox box(&window);
        box.addItems({"a", "b"});
        box.setGeometry(20, 20, 120, 30);
        QLineEdit other(&window);
        other.setGeometry(20, 150, 120, 30);
        window.show();
        QApplication::setActiveWindow(&window);
        box.clearFocus(); // the window gave it the focus
        box.setFocus(Qt::TabFocusReason);
        QWidget *ring = ringIn(&window);
        QVERIFY(ring && ring->isVisible());
        bool shownBeneath = true;
        const std::unique_ptr<QObject> look(
            whenShown(box.view()->window(), [&] { shownBeneath = ring->isVisible(); }));
        box.showPopup();
        QVERIFY(!shownBeneath);
        QVERIFY(!ring->isVisible());
        box.hidePopup();
        QTRY_VERIFY(ring->isVisible());
        // A list that a press opened leaves none.
        other.setFocus(Qt::MouseFocusReason);
        box.setFocus(Qt::MouseFocusReason);
        box.showPopup();
        box.hidePopup();
        QTRY_VERIFY(box.hasFocus() && !QApplication::activePopupWidget());
        QVERIFY(!ring->isVisible());
    }

    void focusRingComesBackWithTheWindow()
    {
        FocusRing::install(Qt::green);
        QWidget window, notice;
        window.resize(300, 100);
        QToolButton button(&window);
        button.setGeometry(20, 20, 80, 30);
        button.setFocusPolicy(Qt::StrongFocus);
        window.show();
        notice.show();
        QApplication::setActiveWindow(&window);
        button.clearFocus(); // the window gave it the focus
        button.setFocus(Qt::TabFocusReason);
        QWidget *ring = ringIn(&window);
        QVERIFY(ring && ring->isVisible());
        QApplication::setActiveWindow(&notice);
        QVERIFY(!ring->isVisible());
        QApplication::setActiveWindow(&window);
        QVERIFY(button.hasFocus());
        QVERIFY(ring->isVisible());
    }

    // From outside of the list, which the toolkit doesn't scroll then.
    void whatTabReachesIsScrolledTo()
    {
        FocusRing::install(Qt::green);
        QWidget window;
        window.resize(300, 200);
        QScrollArea area(&window);
        area.setGeometry(0, 0, 300, 150);
        auto *page = new QWidget;
        page->resize(200, 1000);
        QToolButton inside(page);
        inside.setGeometry(20, 20, 80, 30);
        area.setWidget(page);
        window.show();
        QApplication::setActiveWindow(&window);
        area.verticalScrollBar()->setValue(800);
        inside.clearFocus(); // the window gave it the focus
        inside.setFocus(Qt::TabFocusReason);
        QCOMPARE(area.verticalScrollBar()->value(), 0);
    }

    // Round ends are those of switches and marks; a row of the same height has corners.
    void focusRingHasTheCornersOfItsControl_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("round");
        QTest::newRow("switch") << QString() << 44 << true;
        QTest::newRow("mark") << QString("12") << 24 << true;
        QTest::newRow("row") << QString("Disabled") << 192 << false;
    }
    void focusRingHasTheCornersOfItsControl()
    {
        QFETCH(QString, text);
        QFETCH(int, width);
        QFETCH(bool, round);
        FocusRing::install(Qt::green);
        QWidget window;
        window.resize(300, 100);
        QToolButton button(&window);
        button.setGeometry(20, 20, width, 24);
        button.setText(text);
        window.show();
        QApplication::setActiveWindow(&window);
        button.clearFocus(); // the window gave it the focus
        button.setFocus(Qt::TabFocusReason);
        QWidget *ring = ringIn(&window);
        QVERIFY(ring && ring->isVisible());
        const QImage shot = window.grab().toImage();
        const QPoint corner(3, 3); // in the line of the smaller radius, outside of the larger one
        QCOMPARE(shot.pixelColor(ring->pos() + corner) == shot.pixelColor(0, 0), round);
    }

    void focusRingHugsMarkAndText()
    {
        FocusRing::install(Qt::green);
        QWidget window;
        window.resize(300, 100);
        QCheckBox box("On", &window);
        box.setGeometry(20, 20, 230, 31);
        window.show();
        QApplication::setActiveWindow(&window);
        box.clearFocus(); // the window gave it the focus
        box.setFocus(Qt::TabFocusReason);
        QWidget *ring = ringIn(&window);
        QVERIFY(ring && ring->isVisible());
        QVERIFY(ring->width() < 100);
        QVERIFY(placeIn(&window, ring).contains(QRect(QPoint(20, 25), box.sizeHint())));
    }
};

TEST_CLASS(tst_Looks, BareCatalogue)

#include "tst_looks.moc"
