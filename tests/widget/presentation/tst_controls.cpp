// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Controls in the skin that ships, from their pixels: the open list of a box, tool tips, the focus and groups
// of choices, the slider over two sides, and what is off.
#include "environment/DataRoot.h"
#include "presentation/Motion.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "tests/support/Contrast.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QToolTip>
#include <cmath>

namespace
{

const QColor Page(40, 20, 60); // none of the skin's

using support::contrast;
using support::luminance;

QImage shotOf(QWidget *widget) { return widget->grab().toImage().convertToFormat(QImage::Format_RGB32); }

int count(const QImage &image, const QRect &where, const QColor &color)
{
    int found = 0;
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            found += image.pixelColor(x, y) == color;
    return found;
}

// The brightest pixel, which is that of a text's strokes.
QColor brightest(const QImage &image, const QRect &where)
{
    QColor found = Qt::black;
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            if (luminance(image.pixelColor(x, y)) > luminance(found))
                found = image.pixelColor(x, y);
    return found;
}

struct Window : QWidget {
    Window()
    {
        resize(600, 400);
        QPalette colors = palette();
        colors.setColor(QPalette::Window, Page);
        setPalette(colors);
        show();
        QApplication::setActiveWindow(this);
    }
};

} // namespace

class tst_Controls : public QObject
{
    Q_OBJECT

private:
    static QLabel *bubble(QWidget *window) { return window->findChild<QLabel *>("ToolTip"); }
    static void point(QWidget *widget)
    {
        const QPoint middle = widget->rect().center();
        QHelpEvent help(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
        QCoreApplication::sendEvent(widget, &help);
    }

private slots:
    void theListTicksTheCurrentItem()
    {
        Window window;
        MyConmboBox box(&window);
        box.addItems({"Profile 1", "Profile 2", "Profile 3"});
        box.setGeometry(60, 60, 130, 30);
        QFont smaller = box.font(); // as on a screen of many dots
        smaller.setPointSizeF(smaller.pointSizeF() / 2);
        box.setFont(smaller);
        styleComboBox(&box, style::pictureFolder("Sensor"));
        box.setCurrentIndex(1);
        box.show();
        box.showPopup();
        QCOMPARE(box.view()->font().pointSizeF(), smaller.pointSizeF());
        auto *view = qobject_cast<QListView *>(box.view());
        view->setCurrentIndex({}); // no row is lit
        const QImage list = shotOf(view->viewport());
        for (int row = 0; row < box.count(); ++row) {
            QRect end = view->visualRect(box.model()->index(row, 0));
            end.setLeft(end.right() - 24);
            QCOMPARE(count(list, end, skinColor("SliderColor")) > 0, row == 1);
        }
        box.hidePopup();
    }

    void theListHasAFrameAndThePageBehindItsCorners()
    {
        Window window;
        MyConmboBox box(&window);
        box.addItems({"1", "2", "3", "4", "5", "6", "7"});
        box.setGeometry(60, 60, 64, 30);
        styleComboBox(&box, style::pictureFolder("Sensor"));
        box.show();
        box.showPopup();
        const QImage list = shotOf(box.view()->window());
        const QRect all = list.rect();
        const QPoint middle = all.center();
        for (const QPoint &side : {QPoint(0, middle.y()), QPoint(all.right(), middle.y()),
                                   QPoint(middle.x(), 0), QPoint(middle.x(), all.bottom())})
            QCOMPARE(list.pixelColor(side), style::outlineColor());
        for (const QPoint &corner : {all.topLeft(), all.topRight(), all.bottomLeft(), all.bottomRight()})
            QCOMPARE(list.pixelColor(corner), Page);
        box.hidePopup();
    }

    void aBoxThatIsOffIsDimmerThanAnyText()
    {
        Window window;
        MyConmboBox box(&window);
        box.addItem("Corded");
        box.setGeometry(60, 60, 130, 30);
        styleComboBox(&box, style::pictureFolder("Sensor"));
        box.show();
        const QRect text(8, 4, 80, 22);
        const double live = luminance(brightest(shotOf(&box), text));
        QVERIFY(live > luminance(skinColor("LinEditColorSecond")));
        box.setEnabled(false);
        const QImage off = shotOf(&box);
        QVERIFY(luminance(brightest(off, text)) < luminance(skinColor("LinEditColorSecond")) / 2);
        QVERIFY(off.pixelColor(0, 0) != off.pixelColor(0, 15)); // round
        for (int x = 12; x < 118; ++x)
            QCOMPARE(off.pixelColor(x, 0), off.pixelColor(12, 0)); // solid
    }

    void tipsStayInTheWindow_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::newRow("top left") << QPoint(0, 0);
        QTest::newRow("top right") << QPoint(560, 0);
        QTest::newRow("bottom left") << QPoint(0, 370);
        QTest::newRow("bottom right") << QPoint(560, 370);
        QTest::newRow("middle") << QPoint(280, 180);
    }
    void tipsStayInTheWindow()
    {
        QFETCH(QPoint, place);
        Window window;
        QToolButton button(&window);
        button.setGeometry({place, QSize(40, 30)});
        button.setToolTip("<p>" + QString("A long explanation of what this does. ").repeated(8) + "</p>");
        button.show();
        point(&button);
        QLabel *tip = bubble(&window);
        QVERIFY(tip && tip->isVisible());
        QVERIFY(!QToolTip::isVisible());
        QVERIFY(window.rect().contains(tip->geometry()));
        QVERIFY(!tip->geometry().intersects(button.geometry()));
        QCOMPARE(tip->width(), 260);
        QVERIFY(tip->height() >= tip->heightForWidth(260));
        QTRY_VERIFY(!tip->graphicsEffect());
        const QImage shot = shotOf(&window);
        const QColor plate = shot.pixelColor(tip->geometry().topLeft() + QPoint(4, tip->height() / 2));
        QCOMPARE(plate, skinColor("ComboxBackGroundColor"));
        QVERIFY(contrast(brightest(shot, tip->geometry()), plate) >= 4.5);
        QCOMPARE(shot.pixelColor(tip->geometry().left(), tip->geometry().center().y()),
                 style::outlineColor());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &leave);
        QVERIFY(!tip->isVisible());
    }

    // A text that is longer than its place is read in the tip, beside what the tip says itself.
    void aTextWithoutRoomIsElided()
    {
        const QString text = "One and two and three and four and five and six and seven";
        Window window;
        QLabel line(text, &window), lines(text, &window), whole("One", &window);
        QCheckBox box(text, &window);
        line.setGeometry(20, 20, 120, 20);
        lines.setGeometry(20, 60, 120, 2 * lines.fontMetrics().height());
        lines.setWordWrap(true);
        whole.setGeometry(20, 120, 120, 20);
        box.setGeometry(20, 160, 120, 20);
        box.setToolTip("<p>Explained</p>");
        for (QWidget *each : std::initializer_list<QWidget *>{&line, &lines, &whole, &box})
            each->show();
        const auto tipOf = [&](QWidget *widget) {
            point(widget);
            const QString tip =
                bubble(&window) && bubble(&window)->isVisible() ? bubble(&window)->text() : "";
            QEvent leave(QEvent::Leave);
            QCoreApplication::sendEvent(widget, &leave);
            return tip;
        };
        QCOMPARE(tipOf(&whole), QString());
        QCOMPARE(tipOf(&line), text);
        QCOMPARE(tipOf(&lines), text);
        QCOMPARE(tipOf(&box), "<p>" + text + "</p><p>Explained</p>");
        box.setText("<b>" + text + "</b>"); // which a check box draws as it is
        QCOMPARE(tipOf(&box), "<p>&lt;b&gt;" + text + "&lt;/b&gt;</p><p>Explained</p>");
        box.setToolTip({});
        QCOMPARE(tipOf(&box), "<p>&lt;b&gt;" + text + "&lt;/b&gt;</p>");
        box.setToolTip("Explained");
        QCOMPARE(tipOf(&box), "<p>&lt;b&gt;" + text + "&lt;/b&gt;<br>\nExplained</p>");
        const auto looksLike = [](QLabel &label, const QString &shown) {
            const QImage elided = shotOf(&label);
            label.setText(shown);
            return elided == shotOf(&label);
        };
        QVERIFY(looksLike(line, line.fontMetrics().elidedText(text, Qt::ElideRight, 120)));
        QVERIFY(looksLike(lines, "One and two and\n" +
                                     lines.fontMetrics().elidedText(text.mid(16), Qt::ElideRight, 120)));
        lines.setText("One\n" + text); // a line that ends before the edge
        QVERIFY(looksLike(lines, "One\n" + lines.fontMetrics().elidedText(text, Qt::ElideRight, 120)));
        lines.setText("One\nTwo\nThree");
        QVERIFY(looksLike(lines, "One\nTwo" + QString(QChar(0x2026))));
        lines.setText("One\nTwo");
        QVERIFY(looksLike(lines, "One\nTwo"));
        lines.resize(120, 400); // with room for all
        lines.setText(text);
        QCOMPARE(tipOf(&lines), QString());
    }

    void aCentredTextHasLinesOfOneLength_data()
    {
        QTest::addColumn<bool>("isCentred");
        QTest::addColumn<QString>("shown");
        QTest::newRow("centred") << true << "word word word\nword word word";
        QTest::newRow("at the left") << false << "word word word word word\nword";
    }
    void aCentredTextHasLinesOfOneLength()
    {
        QFETCH(bool, isCentred);
        QFETCH(QString, shown);
        Window window;
        QLabel label("word word word word word word", &window);
        label.setWordWrap(true);
        label.setAlignment(isCentred ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
        label.setGeometry(20, 20, label.fontMetrics().size(0, "word word word word word").width() + 4, 60);
        label.show();
        const QImage wrapped = shotOf(&label);
        label.setText(shown);
        QCOMPARE(wrapped, shotOf(&label));
        label.setText("word");
        QVERIFY(wrapped != shotOf(&label));
    }

    // The question for a tip goes on to what lies behind, which would have to paint its whole picture.
    void aTipDrawsNoPage()
    {
        struct Page : QWidget {
            using QWidget::QWidget;
            void paintEvent(QPaintEvent *) override { ++paints; }
            int paints = 0;
        };
        Window window;
        Page page(&window);
        QLabel label("One and two and three", &page);
        page.resize(300, 200);
        label.setGeometry(20, 20, 200, 20);
        page.show();
        QTRY_VERIFY(page.paints > 0);
        QCoreApplication::processEvents();
        page.paints = 0;
        point(&label);
        QVERIFY(!bubble(&window));
        QCOMPARE(page.paints, 0);
        page.setToolTip("The page's own");
        point(&label); // still passed on
        QVERIFY(bubble(&window) && bubble(&window)->isVisible());
        QCOMPARE(bubble(&window)->text(), page.toolTip());
    }

    void aWishForNoMotionIsHeardOnTheWayBack()
    {
        const QTemporaryDir config;
        QVERIFY(QDir(config.path()).mkpath("gtk-3.0"));
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const auto restored = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });
        QTRY_VERIFY(motionTime() > 0);
        QFile settings(config.filePath("gtk-3.0/settings.ini"));
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("[Settings]\ngtk-enable-animations=0\n");
        settings.close();
        QVERIFY2(motionTime() > 0, "a fade that begins in a paint reads no file");
        emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        QCOMPARE(motionTime(), 0);
    }
    void motionIsForThoseWhoWantIt_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("moves");
        const QString gtk = "gtk-3.0/settings.ini";
        QTest::newRow("nothing said") << gtk << QByteArray("[Settings]\n") << true;
        QTest::newRow("GTK on") << gtk << QByteArray("[Settings]\ngtk-enable-animations=true\n") << true;
        QTest::newRow("GTK off") << gtk << QByteArray("[Settings]\ngtk-enable-animations=false\n") << false;
        QTest::newRow("GTK 0") << gtk << QByteArray("[Settings]\ngtk-enable-animations=0\n") << false;
        QTest::newRow("GTK 4 off") << "gtk-4.0/settings.ini"
                                   << QByteArray("[Settings]\ngtk-enable-animations=false\n") << false;
        QTest::newRow("KDE slow") << "kdeglobals" << QByteArray("[KDE]\nAnimationDurationFactor=2\n") << true;
        QTest::newRow("KDE off") << "kdeglobals" << QByteArray("[KDE]\nAnimationDurationFactor=0\n") << false;
    }
    void motionIsForThoseWhoWantIt()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(bool, moves);
        const QTemporaryDir config;
        QVERIFY(QDir(config.path()).mkpath(QFileInfo(file).path()));
        QFile settings(config.filePath(file));
        QVERIFY(settings.open(QIODevice::WriteOnly) && settings.write(content) == content.size());
        settings.close();
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const auto restored = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });
        QVERIFY(motionTime() == 0 || (motionTime() >= 120 && motionTime() <= 150));
        QCOMPARE(motionTime() > 0, moves);
        Window window;
        QToolButton button(&window);
        button.setCheckable(true);
        button.setToolTip("A tip");
        button.setGeometry(60, 60, 44, 24);
        switchSoftly(&button, style::pictureFolder("Sensor"));
        button.show();
        button.click();
        QCoreApplication::sendPostedEvents(&button); // the motion begins behind the edit
        QCOMPARE(button.findChild<QWidget *>("MotionCover") != nullptr, moves);
        const QRect part(20, 200, 80, 40);
        QLabel changing("One", &window);
        changing.setGeometry(part);
        changing.show();
        {
            const SoftChange change(&window, part);
            changing.setText("Two");
        }
        const auto *cover = window.findChild<QWidget *>("MotionCover", Qt::FindDirectChildrenOnly);
        QCOMPARE(cover != nullptr, moves);
        QVERIFY(!cover || (cover->isVisible() && cover->geometry() == part));
        QCOMPARE(window.childAt(part.center()), &changing); // it can be clicked meanwhile
        point(&button);
        QVERIFY(bubble(&window)->isVisible());
        QCOMPARE(bubble(&window)->graphicsEffect() != nullptr, moves);
        QTRY_VERIFY(!button.findChild<QWidget *>("MotionCover")); // both end and leave nothing
        QTRY_VERIFY(!window.findChild<QWidget *>("MotionCover"));
        QTRY_VERIFY(!bubble(&window)->graphicsEffect());
        QVERIFY(bubble(&window)->isVisible());
    }

    void theRingIsNotOfTheCheckedColor()
    {
        Window window;
        QToolButton button(&window);
        button.setGeometry(60, 60, 80, 30);
        button.show();
        button.clearFocus();
        button.setFocus(Qt::TabFocusReason);
        const QColor ring = shotOf(&window).pixelColor(57, 75);
        for (const char *surface : {"#121517", "#191d20", "#21272a", "#2b3236"})
            QVERIFY(contrast(ring, QColor(surface)) >= 3);
        QVERIFY(qAbs(ring.hslSaturation()) < 100);
        QVERIFY(ring != skinColor("SliderColor"));
    }

    void tabEntersAGroupAtItsCheckedMember()
    {
        Window window;
        QToolButton before(&window), one(&window), two(&window), three(&window), after(&window);
        int x = 0;
        for (QToolButton *button : {&before, &one, &two, &three, &after}) {
            button->setGeometry(x += 60, 60, 40, 30);
            button->setFocusPolicy(Qt::StrongFocus);
            button->show();
        }
        for (QToolButton *choice : {&one, &two, &three}) {
            choice->setCheckable(true);
            choice->setAutoExclusive(true);
        }
        tabEntersAtChecked({&one, &two, &three});
        before.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&before, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &one);
        for (QToolButton *checked : {&three, &two}) {
            checked->setChecked(true);
            before.setFocus(Qt::TabFocusReason);
            QTest::keyClick(&before, Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), checked);
            QTest::keyClick(checked, Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), &after);
        }
    }

    void theFillBeginsAtZero()
    {
        Window window;
        CentredSlider slider(Qt::Horizontal, &window);
        slider.setGeometry(60, 60, 286, 32);
        slider.setRange(-30, 30);
        slider.setStyleSheet(style::centredSlider());
        slider.show();
        const QColor fill = skinColor("SliderColor");
        const QRect left(20, 15, 100, 2);
        const QRect right(165, 15, 100, 2);
        const auto filled = [&](const QRect &side) { return count(shotOf(&slider), side, fill) > 100; };
        QVERIFY(!filled(left) && !filled(right));
        slider.setValue(-30);
        QVERIFY(filled(left) && !filled(right));
        slider.setValue(30);
        QVERIFY(!filled(left) && filled(right));
        slider.setEnabled(false);
        QVERIFY(!filled(left) && !filled(right));
    }
};

TEST_CLASS(tst_Controls, fixture::ShippedProduct)

#include "tst_controls.moc"
