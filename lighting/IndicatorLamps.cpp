// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/IndicatorLamps.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"
#include "lighting/LightDevice.h"
#include "presentation/Edit.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "presentation/language/LanguageTables.h"

#include <QLabel>
#include <QSignalBlocker>

namespace
{

// Keys of lists in the section light, not of its texts.
constexpr const char *ItemKeys[] = {"0", "3", "2", "1"};
constexpr int ResetItems[IndicatorLamps::Count] = {2, 2, 3};
constexpr int FirstBoxName = 3; // LightMod_3 is the first lamp's
// The colours of the lamps are the keys of what they mean.
constexpr const char *LegendColors[IndicatorLamps::Count] = {"#42e81b", "#f5b020", "#f52c17"};
constexpr const char *LegendDefaults[IndicatorLamps::Count] = {"优秀", "正常", "差"};
constexpr char IndicatorTitle[] = "接收器指示灯";
constexpr const char *ItemDefaults[] = {"关闭", "电量", "回报率", "信号"};
constexpr char LampSheet[] = "QLabel{background-color: %1;border-radius: 6px;}";

constexpr int LampsLeft = 28;
constexpr QRect TipsPlace{28, 36, 760, 20};
constexpr int BoxTop = 66;
constexpr int LampPlacePitch = 254;
constexpr int CaptionWidth = 44;
constexpr int BoxWidth = 160;
constexpr int LegendTop = 108;
constexpr int LegendPitch = 130;
constexpr int LampSize = 12;

} // namespace

IndicatorLamps::IndicatorLamps(QWidget *parent)
    : QWidget(parent), heading_(this, QStringLiteral("indicatorTitle")), tips_(new QLabel(this))
{
    resize(Size);
    heading_.setText(QString::fromUtf8(IndicatorTitle));
    tips_->setGeometry(TipsPlace);
    tips_->setText(QStringLiteral("选择接收器上的LED指示灯所传达的信息"));
    for (int i = 0; i < Count; ++i) {
        const int x = LampsLeft + i * LampPlacePitch;
        auto *caption = new QLabel(QStringLiteral("LED%1").arg(i + 1), this);
        caption->setGeometry(x, BoxTop, CaptionWidth, 30);
        auto *box = new MyConmboBox(this);
        box->setObjectName(QStringLiteral("LightMod_%1").arg(i + FirstBoxName));
        box->setGeometry(x + CaptionWidth, BoxTop, BoxWidth, 30);
        box->setProperty("nameKey", QStringLiteral("light Indicator %1").arg(i + 1));
        for (const char *text : ItemDefaults)
            box->addItem(QString::fromUtf8(text));
        captions_[std::size_t(i)] = caption;
        boxes_[std::size_t(i)] = box;
    }
    buildLegend();
}

void IndicatorLamps::buildLegend()
{
    for (int i = 0; i < Count; ++i) {
        const int x = LampsLeft + i * LegendPitch;
        auto *lamp = new QLabel(this);
        lamp->setGeometry(x, LegendTop + (20 - LampSize) / 2, LampSize, LampSize);
        auto *meaning = new QLabel(QString::fromUtf8(LegendDefaults[i]), this);
        meaning->setObjectName(QStringLiteral("legend_%1").arg(i + 1));
        meaning->setGeometry(x + LampSize + 8, LegendTop, LegendPitch - LampSize - 16, 20);
        lamps_[std::size_t(i)] = lamp;
        meanings_[std::size_t(i)] = meaning;
    }
}

void IndicatorLamps::applyStyle()
{
    heading_.applyStyle();
    tips_->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    for (std::size_t i = 0; i < Count; ++i) {
        captions_[i]->setStyleSheet(style::label(style::color("LabelColor")));
        styleComboBox(boxes_[i], style::pictureFolder(QStringLiteral("Sensor")));
        lamps_[i]->setStyleSheet(QString::fromLatin1(LampSheet).arg(QLatin1String(LegendColors[i])));
        meanings_[i]->setStyleSheet(style::label(style::color("LabelColor")));
    }
}

void IndicatorLamps::setTexts(int language)
{
    const auto setTextOf = [](QLabel *label, const QString &text) {
        if (!text.isEmpty())
            label->setText(text);
    };
    heading_.setText(language::text(language::Section::light, "receiverLight", language));
    setTextOf(tips_, language::text(language::Section::light, "PreviewLightsTips", language));
    for (std::size_t i = 0; i < Count; ++i) {
        setTextOf(meanings_[i],
                  language::choice("StatusDescriptionList", QLatin1String(LegendColors[i]), language));
        const QSignalBlocker silent(boxes_[i]);
        for (int item = 0; item < int(std::size(ItemKeys)); ++item) {
            const QString text = language::choice("receiverList", QLatin1String(ItemKeys[item]), language);
            if (!text.isEmpty())
                boxes_[i]->setItemText(item, text);
        }
    }
}

// The byte of a device may be none of the list.
void IndicatorLamps::show(int lamp, int index)
{
    QComboBox *box = boxes_[std::size_t(lamp)];
    const QSignalBlocker silent(box);
    if (index < box->count())
        box->setCurrentIndex(index);
    accepted_[std::size_t(lamp)] = box->currentIndex();
}

bool IndicatorLamps::fetch()
{
    DongleIndicator answer{};
    answer.Choice[0] = NoLightAnswer;
    UsbFinderC_GetDongleIndicatorLed(CurrentDevicePath(), &answer);
    known_ = answer.Choice[0] != NoLightAnswer;
    if (known_)
        DongleIndicator_ = answer;
    return known_;
}

void IndicatorLamps::accept()
{
    for (int i = 0; i < Count; ++i)
        show(i, DongleIndicator_.Choice[i]);
}

void IndicatorLamps::read()
{
    reset_ = false;
    fetch();
    accept();
}

void IndicatorLamps::forget()
{
    DongleIndicator_ = {};
    known_ = false;
    accept();
}

void IndicatorLamps::reset()
{
    forget();
    for (int i = 0; i < Count; ++i)
        show(i, ResetItems[i]);
    accepted_ = {};
    reset_ = true;
}

// A record that the last read did not get is read first, since the write would change the other lamps, and
// shown with the choice that is about to be written. False when the receiver is silent still.
bool IndicatorLamps::prepare(int lamp, int index)
{
    if (known_)
        return true;
    if (!fetch())
        return false;
    if (reset_)
        return true;
    accept();
    QComboBox *box = boxes_[std::size_t(lamp)];
    const QSignalBlocker silent(box);
    box->setCurrentIndex(index);
    return true;
}

void IndicatorLamps::change(int lamp, int index)
{
    const auto write = [this, lamp, index] {
        if (!prepare(lamp, index))
            return false;
        DongleIndicator wanted = DongleIndicator_;
        wanted.Choice[lamp] = uint8_t(index);
        if (!UsbFinderC_SetDongleIndicatorLed(CurrentDevicePath(), &wanted))
            return false;
        DongleIndicator_ = wanted;
        PushRecord();
        return true;
    };
    const auto giveBack = [this, lamp] { show(lamp, accepted_[std::size_t(lamp)]); };
    if (edit(LightPageBusy, boxes_[std::size_t(lamp)], write, giveBack) == EditResult::Written)
        accept();
}
