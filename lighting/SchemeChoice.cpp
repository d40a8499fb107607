// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/SchemeChoice.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"
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
// Each scheme by its key in the list of what a receiver shows, and its steps by theirs.
struct Scheme {
    const char *key;
    const char *steps;
};
constexpr Scheme Schemes[SchemeChoice::Count] = {
    {"signal", "excellent normal poor"},
    {"battery", "100% 50% 25%"},
    {"rate", "8000Hz 4000Hz 2000Hz 1000Hz 500Hz 250Hz 125Hz"},
};
constexpr const char *NameDefaults[SchemeChoice::Count] = {"信号", "电量", "回报率"};

constexpr int SchemesLeft = 28;
constexpr int SchemePitch = 258;
constexpr int SchemeWidth = 244;
constexpr int ButtonTop = 44;
constexpr int ButtonHeight = 36;
constexpr int DescriptionTop = 86;
constexpr int DescriptionHeight = 60;

QString status(const QString &key, int language)
{
    return language::choice("receiverStatusList", key, language);
}

} // namespace

SchemeChoice::SchemeChoice(QWidget *parent)
    : QWidget(parent), heading_(this, QStringLiteral("schemeTitle")), group_(new QButtonGroup(this))
{
    resize(Size);
    for (int i = 0; i < Count; ++i) {
        const int x = SchemesLeft + i * SchemePitch;
        auto *button = new QToolButton(this);
        button->setObjectName(QLatin1String(ButtonNames[i]));
        button->setGeometry(x, ButtonTop, SchemeWidth, ButtonHeight);
        button->setCheckable(true);
        button->setText(QString::fromUtf8(NameDefaults[i]));
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
        buttons_[i]->setStyleSheet(
            style::stateButton(pictures, QStringLiteral("Scheme"), label, style::color("SliderColor")));
        descriptions_[i]->setStyleSheet(style::description());
    }
}

void SchemeChoice::setTexts(int language)
{
    const auto light = [language](const char *key) {
        return language::text(language::Section::light, key, language);
    };
    heading_.setText(light("ReceiverShows"));
    const int usual = DeviceCatalogue().list(SelectedDevice::info().DriveIndex, "Adveanced").value(1).toInt();
    for (int i = 0; i < Count; ++i) {
        const Scheme &scheme = Schemes[i];
        QString name = status(QLatin1String(scheme.key), language);
        if (name.isEmpty())
            continue;
        if (i + 1 == usual)
            name += QStringLiteral(" (%1)").arg(light("default"));
        buttons_[std::size_t(i)]->setText(name);
        QStringList steps;
        for (const QString &step : QString::fromLatin1(scheme.steps).split(QLatin1Char(' ')))
            steps << status(step, language).replace(QLatin1Char(' '), QChar::Nbsp);
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

// An exclusive group does not uncheck its last button.
void SchemeChoice::show(int scheme)
{
    const QSignalBlocker a(buttons_[0]), b(buttons_[1]), c(buttons_[2]);
    group_->setExclusive(false);
    for (int i = 0; i < Count; ++i)
        buttons_[std::size_t(i)]->setChecked(i + 1 == scheme);
    group_->setExclusive(true);
    stopTabAtChecked(group_->buttons());
}

// The button that loses its check has nothing to ask for: the one that gets it does.
void SchemeChoice::change(int scheme, bool checked)
{
    if (!checked)
        return;
    edit(
        group_,
        [this, scheme] {
            if (!CheckOnline())
                return false;
            record_->Scheme = uint8_t(scheme);
            UsbFinderC_Set4KDongleRGB(CurrentDevicePath(), record_);
            return true;
        },
        [this] { show(record_->Scheme); });
}
