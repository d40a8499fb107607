// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Motion.h"

#include "environment/DesktopSettings.h"
#include "environment/Inquiry.h"
#include "presentation/SkinPalette.h"

#include <QAbstractButton>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QPainter>
#include <QPropertyAnimation>
#include <QSettings>
#include <QStandardPaths>
#include <new>

namespace
{

constexpr int MotionMs = 130;
constexpr QStyle::State FadingStates = QStyle::State_MouseOver | QStyle::State_On;
const QString CoverName = QStringLiteral("MotionCover");

// Where desktops keep the wish for no animation, and the values that express it.
struct Wish {
    const char *file;
    const char *key;
    const char *none[2];
};
constexpr Wish Wishes[] = {
    {"gtk-3.0/settings.ini", "Settings/gtk-enable-animations", {"0", "false"}},
    {"gtk-4.0/settings.ini", "Settings/gtk-enable-animations", {"0", "false"}},
    {"kdeglobals", "KDE/AnimationDurationFactor", {"0", "0.0"}},
};

class Cover : public QWidget
{
public:
    Cover(const QPixmap &picture, const QRect &part, QWidget *covered) : QWidget(covered), picture_(picture)
    {
        delete covered->findChild<QWidget *>(CoverName,
                                             Qt::FindDirectChildrenOnly); // that of a change before
        setObjectName(CoverName);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(part);
        fade_.setStartValue(1.0);
        fade_.setEndValue(0.0);
        fade_.setDuration(MotionMs);
        connect(&fade_, &QVariantAnimation::valueChanged, this, QOverload<>::of(&QWidget::update));
        connect(&fade_, &QVariantAnimation::finished, this, &QObject::deleteLater);
        fade_.start();
        raise();
        show();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setOpacity(fade_.currentValue().toReal());
        painter.drawPixmap(0, 0, picture_);
    }

private:
    QPixmap picture_;
    QVariantAnimation fade_;
};

bool managerAllows()
{
    const QByteArray settings = desktopSettings();
    return desktopNumber(settings, "Gtk/EnableAnimations") != 0 &&
           desktopNumber(settings, "Net/EnableAnimations") != 0;
}

bool allowed = false; // by the settings manager, where there is one

QString configFolder() { return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation); }

// What the desktops' files say, kept because a fade may begin in a paint.
struct FileWishes {
    QString folder; // that they were read in
    bool allow = false;

    void read()
    {
        folder = configFolder();
        allow = true;
        for (const Wish &wish : Wishes) {
            const QSettings settings(folder + QLatin1Char('/') + QLatin1String(wish.file),
                                     QSettings::IniFormat);
            const QString value = settings.value(QLatin1String(wish.key)).toString().toLower();
            allow = allow && value != QLatin1String(wish.none[0]) && value != QLatin1String(wish.none[1]);
        }
    }
};
FileWishes fileWishes;

} // namespace

void askForMotion()
{
    static Inquiry asked;
    static bool isAsked = false;
    if (isAsked)
        return;
    isAsked = true;
    fileWishes.read();
    // Who changes the desktop's settings does so in another window.
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                     [](Qt::ApplicationState now) {
                         if (now == Qt::ApplicationActive)
                             fileWishes.read();
                     });
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        allowed = true;
        return;
    }
    asked.ask([]() -> Inquiry::Answer {
        const bool answer = managerAllows();
        return [answer] { allowed = answer; };
    });
}

int motionTime()
{
    askForMotion();
    if (!allowed)
        return 0;
    if (fileWishes.folder != configFolder())
        fileWishes.read();
    return fileWishes.allow ? MotionMs : 0;
}

void switchSoftly(QAbstractButton *button, const QString &folder)
{
    const auto cover = [button, folder](bool on) {
        if (!button->isVisible() || motionTime() == 0)
            return;
        const QString before = folder + (on ? QStringLiteral("Close.png") : QStringLiteral("Open.png"));
        new Cover(skinPicture(before, button), button->rect(), button);
    };
    // Queued, so that the desktop's settings are read behind the edit that the switch makes.
    QObject::connect(button, &QAbstractButton::toggled, button, cover, Qt::QueuedConnection);
}

SoftChange::SoftChange(QWidget *ground, const QRect &part) : ground_(ground), part_(part)
{
    if (!part.isEmpty() && ground->isVisible() && motionTime() > 0)
        before_ = ground->grab(part);
}

SoftChange::~SoftChange()
{
    if (before_.isNull())
        return;
    try {
        new Cover(before_, part_, ground_);
    } catch (const std::bad_alloc &) { // it switches without a fade
    }
}

void StateFade::paint(QWidget *widget, QPainter &painter, QStyle::State state, const Draw &draw)
{
    const QStyle::State before = shown_.value_or(state);
    shown_ = state;
    if (state & QStyle::State_Sunken) {
        fade_.reset();
    } else if (((state ^ before) & FadingStates) && motionTime() > 0) {
        const qreal ratio = widget->devicePixelRatioF();
        before_ = QPixmap(widget->size() * ratio);
        before_.setDevicePixelRatio(ratio);
        before_.fill(Qt::transparent);
        QPainter onPicture(&before_);
        onPicture.setFont(widget->font());
        draw(onPicture, before);
        fade_ = std::make_unique<QVariantAnimation>();
        fade_->setStartValue(1.0);
        fade_->setEndValue(0.0);
        fade_->setDuration(MotionMs);
        QObject::connect(fade_.get(), &QVariantAnimation::valueChanged, widget,
                         QOverload<>::of(&QWidget::update));
        fade_->start();
    }
    draw(painter, state);
    if (fade_ && fade_->state() == QAbstractAnimation::Running) {
        painter.setOpacity(fade_->currentValue().toReal());
        painter.drawPixmap(0, 0, before_);
    } else {
        fade_.reset();
        before_ = QPixmap();
    }
}

void StateFade::forget()
{
    shown_.reset();
    fade_.reset();
}

void fadeIn(QWidget *widget)
{
    const int time = motionTime();
    if (time == 0)
        return;
    auto *opacity = new QGraphicsOpacityEffect(widget);
    opacity->setOpacity(0);
    widget->setGraphicsEffect(opacity);
    auto *fade = new QPropertyAnimation(opacity, "opacity", opacity);
    fade->setDuration(time);
    fade->setEndValue(1.0);
    // A widget with an effect is painted on the side each time.
    QObject::connect(
        fade, &QPropertyAnimation::finished, widget, [widget] { widget->setGraphicsEffect(nullptr); },
        Qt::QueuedConnection); // the animation goes with the effect
    fade->start();
}
