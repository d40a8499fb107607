// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/SchemeChoice.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"
#include "lighting/LightDevice.h"
#include "presentation/Edit.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "presentation/language/LanguageTables.h"

#include <QButtonGroup>
#include <QSignalBlocker>
#include <QTextEdit>

namespace
{

constexpr const char *ButtonNames[SchemeChoice::Count] = {"ReUntil", "ReUntil_2", "ReUntil_3"};
constexpr const char *DescriptionNames[SchemeChoice::Count] = {"textEdit", "textEdit_2", "textEdit_3"};
// Each scheme by its key in the list of what a receiver shows, and its steps by theirs; with the texts that
// show where the list has none.
struct Scheme {
    const char *key, *name;
    const char *steps, *stepNames;
};
constexpr Scheme Schemes[SchemeChoice::Count] = {
    {"signal", "信号", "excellent normal poor", "优秀 正常 差"},
    {"battery", "电量", "100% 50% 25%", "100% 50% 25%"},
    {"rate", "回报率", "8000Hz 4000Hz 2000Hz 1000Hz 500Hz 250Hz 125Hz",
     "8000HZ 4000HZ 2000HZ 1000HZ 500HZ 250HZ 125HZ"},
};
constexpr char UsualDefault[] = "默认";
constexpr char SchemeTitle[] = "接收器灯光显示";

constexpr int SchemesLeft = 28;
constexpr int SchemePitch = 258;
constexpr int SchemeWidth = 244;
constexpr int ButtonTop = 44;
constexpr int ButtonHeight = 36;
constexpr int DescriptionTop = 86;
constexpr int DescriptionHeight = 60;

QString status(const QString &key, const QString &none, int language)
{
    const QString text = language::choice("receiverStatusList", key, language);
    return text.isEmpty() ? none : text;
}

} // namespace

SchemeChoice::SchemeChoice(QWidget *parent)
    : QWidget(parent), heading_(this, QStringLiteral("schemeTitle")), group_(new QButtonGroup(this))
{
    resize(Size);
    heading_.setText(QString::fromUtf8(SchemeTitle));
    for (int i = 0; i < Count; ++i) {
        const int x = SchemesLeft + i * SchemePitch;
        auto *button = new QToolButton(this);
        button->setObjectName(QLatin1String(ButtonNames[i]));
        button->setGeometry(x, ButtonTop, SchemeWidth, ButtonHeight);
        button->setCheckable(true);
        group_->addButton(button, i + 1);
        auto *description = new QTextEdit(this);
        description->setObjectName(QLatin1String(DescriptionNames[i]));
        description->setGeometry(x, DescriptionTop, SchemeWidth, DescriptionHeight);
        description->setReadOnly(true);
        description->setFocusPolicy(Qt::NoFocus);
        description->setFrameShape(QFrame::NoFrame);
        description->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        description->viewport()->setCursor(Qt::ArrowCursor);
        buttons_[std::size_t(i)] = button;
        descriptions_[std::size_t(i)] = description;
    }
    tabEntersAtChecked(group_->buttons());
}

void SchemeChoice::applyStyle()
{
    const QString pictures = style::pictureFolder(QStringLiteral("Light"));
    heading_.applyStyle();
    const QString label = style::color("LabelColor");
    for (std::size_t i = 0; i < Count; ++i) {
        buttons_[i]->setStyleSheet(style::stateButton(pictures, QStringLiteral("Scheme"), label, label));
        descriptions_[i]->setStyleSheet(style::description());
    }
}

void SchemeChoice::setTexts(int language)
{
    heading_.setText(language::text(language::Section::light, "ReceiverShows", language));
    QString usualName = language::text(language::Section::light, "default", language);
    if (usualName.isEmpty())
        usualName = QString::fromUtf8(UsualDefault);
    const int usual = DeviceCatalogue().list(SelectedDevice::info().DriveIndex, "Adveanced").value(1).toInt();
    for (int i = 0; i < Count; ++i) {
        const Scheme &scheme = Schemes[i];
        QString name = status(QLatin1String(scheme.key), QString::fromUtf8(scheme.name), language);
        if (i + 1 == usual)
            name += QStringLiteral(" (%1)").arg(usualName);
        buttons_[std::size_t(i)]->setText(name);
        QStringList steps = QString::fromLatin1(scheme.steps).split(QLatin1Char(' '));
        const QStringList names = QString::fromUtf8(scheme.stepNames).split(QLatin1Char(' '));
        for (int step = 0; step < steps.size(); ++step)
            steps[step] = status(steps[step], names[step], language).replace(QLatin1Char(' '), QChar::Nbsp);
        const QString text = steps.join(QChar(QChar::Nbsp) + QStringLiteral("· "));
        descriptions_[std::size_t(i)]->setPlainText(text);
        descriptions_[std::size_t(i)]->setAccessibleName(name);
        buttons_[std::size_t(i)]->setAccessibleDescription(text);
    }
}

void SchemeChoice::setRecord(DongleRGB *record)
{
    record_ = record;
    show(record_->Scheme);
}

void SchemeChoice::dropUnread()
{
    nothingRead_ = {};
    if (!record_->Scheme)
        show(0);
}

// An exclusive group does not uncheck its last button.
void SchemeChoice::show(int scheme)
{
    shown_ = scheme;
    const QSignalBlocker a(buttons_[0]), b(buttons_[1]), c(buttons_[2]);
    group_->setExclusive(false);
    for (int i = 0; i < Count; ++i)
        buttons_[std::size_t(i)]->setChecked(i + 1 == scheme);
    group_->setExclusive(true);
    stopTabAtChecked(group_->buttons());
}

// The record of a receiver that has been silent so far is read first: the write would clear the bytes that it
// carries.
bool SchemeChoice::write(int scheme)
{
    DongleRGB wanted = *record_;
    if (!wanted.Scheme) {
        wanted.Scheme = NoLightAnswer;
        UsbFinderC_Get4KDongleRGBValue(CurrentDevicePath(), &wanted);
        if (wanted.Scheme == NoLightAnswer)
            return false;
    }
    shown_ = scheme;
    wanted.Scheme = uint8_t(scheme);
    *record_ = wanted;
    UsbFinderC_Set4KDongleRGB(CurrentDevicePath(), record_);
    return true;
}

// The button that loses its check has nothing to ask for: the one that gets it does.
void SchemeChoice::change(int scheme, bool checked)
{
    if (!checked)
        return;
    edit(
        group_, [this, scheme] { return CheckOnline() && write(scheme); }, [this] { show(shown_); });
}
