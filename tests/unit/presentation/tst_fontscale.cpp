// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "presentation/FontScale.h"
#include "tests/support/TestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QToolTip>
#include <QVBoxLayout>
#include <QtTest>

class tst_FontScale : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        window_ = std::make_unique<QWidget>();
        window_->setFont(sized(12));
    }

    void shrinksEachWidgetOnce()
    {
        auto *inner = new QWidget(window_.get());
        auto *inherits = new QLabel(inner); // its font comes from two levels above
        auto *own = new QLabel(inner);
        own->setFont(sized(18));
        new QObject(inner); // children that are no widgets are passed over
        scaleFonts(window_.get(), 2.0 / 3.0);
        QCOMPARE(window_->font().pointSizeF(), 8.0);
        QCOMPARE(inner->font().pointSizeF(), 8.0);
        QCOMPARE(inherits->font().pointSizeF(), 8.0);
        QCOMPARE(own->font().pointSizeF(), 12.0);
    }

    void leavesFontsAtFactorOne()
    {
        auto *label = new QLabel(window_.get());
        scaleFonts(window_.get(), 1.0);
        QCOMPARE(window_->font().pointSizeF(), 12.0);
        QCOMPARE(label->font().pointSizeF(), 12.0);
    }

    void keepsTheFontOfReceive2()
    {
        auto *kept = new QLabel(window_.get());
        kept->setObjectName(QStringLiteral("Receive_2"));
        kept->setFont(sized(10));
        auto *below = new QLabel(kept);
        below->setFont(sized(30));
        scaleFonts(window_.get(), 0.5);
        QCOMPARE(kept->font().pointSizeF(), 10.0);
        QCOMPARE(below->font().pointSizeF(), 15.0);
    }

    void givesTheFontOfNoApearToTheToolTips()
    {
        const QFont before = QToolTip::font();
        auto *box = new QCheckBox(window_.get());
        box->setObjectName(QStringLiteral("NoApear"));
        box->setFont(sized(20));
        scaleFonts(window_.get(), 0.5);
        QCOMPARE(box->font().pointSizeF(), 10.0);
        QCOMPARE(QToolTip::font().pointSizeF(), 10.0);
        QToolTip::setFont(before);
    }

    void passesOverFontsInPixels()
    {
        auto *label = new QLabel(window_.get());
        QFont pixels;
        pixels.setPixelSize(17);
        label->setFont(pixels);
        scaleFonts(window_.get(), 0.5);
        QCOMPARE(label->font().pixelSize(), 17);
    }

private:
    static QFont sized(qreal points)
    {
        QFont font;
        font.setPointSizeF(points);
        return font;
    }

    std::unique_ptr<QWidget> window_;
};

TEST_CLASS(tst_FontScale, testmain::WidgetApplication)
#include "tst_fontscale.moc"
