// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LightGroup.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "lighting/HueField.h"
#include "lighting/LightPreview.h"
#include "lighting/LightTables.h"
#include "lighting/PresetButton.h"
#include "presentation/Edit.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "presentation/language/LanguageTables.h"

#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <utility>

const LightNames MouseLightNames = {
    "",        "line",      "line_2",   "LightSpinBox_2",  "SpeedSpinBox_2",   "label_6",
    "label_7", "LightMode", "灯光效果", "light LightMode", "light Brightness", "light Speed"};
// The names with _2 of the two boxes are the mouse's own.
const LightNames ReceiverLightNames = {
    "_2",      "line_3",   "line_4", "LightSpinBox_3",     "SpeedSpinBox_3",           "label_8",
    "label_9", "receiver", "接收器", "light ReceiverMode", "light ReceiverBrightness", "light ReceiverSpeed"};

namespace
{

// Where things stand in the group. The columns of the first row are those of the DPI light.
constexpr QRect ModePlace{28, 40, 152, 30};
constexpr QRect BrightnessCaptionPlace{196, 40, 84, 30};
constexpr QRect BrightnessPlace{284, 43, 180, 24};
constexpr QRect BrightnessBoxPlace{468, 40, 32, 30};
constexpr QRect SpeedCaptionPlace{532, 40, 56, 30};
constexpr QRect SpeedPlace{592, 43, 160, 24};
constexpr QRect SpeedBoxPlace{756, 40, 32, 30};
constexpr QRect CustomPlace{28, 78, 176, 20};
constexpr QRect FieldPlace{28, 102, 176, 104};
constexpr int ChannelTop = 102;
constexpr int ChannelPitch = 36;
constexpr int ChannelCaptionX = 216;
constexpr int ReduceX = 238;
constexpr int BoxX = 274;
constexpr int AddX = 326;
constexpr QSize StepSize{32, 32};
constexpr QRect PresetsPlace{380, 78, 220, 20};
constexpr int PresetTop = 102;
constexpr int PresetStep = 33;
constexpr int PresetColumns = 7;
constexpr QSize PresetExtent{28, 28};
constexpr QRect PreviewCaptionPlace{380, 174, 60, 32};
constexpr QRect SwatchPlace{444, 176, 62, 28};
constexpr QRect HexPlace{514, 175, 94, 30};
constexpr QRect PreviewBesideColor{632, 82, 156, 124};
constexpr QRect PreviewAlone{28, 82, 760, 124};

struct ChannelRow {
    char letter;
    const char *captionKey;
    const char *nameKey, *lessKey, *moreKey;
};
constexpr ChannelRow ChannelRows[LightGroup::Channels] = {
    {'R', "R:", "light Red", "light RedLess", "light RedMore"},
    {'G', "G:", "light Green", "light GreenLess", "light GreenMore"},
    {'B', "B:", "light Blue", "light BlueLess", "light BlueMore"},
};

constexpr char ColorSheet[] = "QLabel{background-color: rgb(%1,%2,%3);border: 2px solid  rgb(220,220,220);}";

void showText(QLabel *label, const char *key, int language)
{
    const QString text = language::text(language::Section::light, key, language);
    if (!text.isEmpty())
        label->setText(text);
}

QString codeOf(const QColor &color) { return color.name().toUpper(); }

} // namespace

LightGroup::LightGroup(const LightNames &names, LightDevice &device, QWidget *parent)
    : QWidget(parent), names_(names), device_(device), heading_(this, named("lightTitle"))
{
    resize(Size);
    heading_.setText(QString::fromUtf8(names_.titleDefault));
    buildMode();
    buildScales();
    buildColor();
    buildChannels();
    buildPresets();
    buildHex(); // the order of the keyboard
    preview_ = add<LightPreview>("lightPreview", PreviewAlone);
    preview_->setProperty("nameKey", QStringLiteral("light Preview"));
    setState({});
    showMode(LightOff);
}

// ---- What it is made of -------------------------------------------------------------------------

QString LightGroup::named(const char *name) const
{
    return QLatin1String(name) + QLatin1String(names_.suffix);
}

template <typename Widget> Widget *LightGroup::add(const char *name, const QRect &place)
{
    return addNamed<Widget>(named(name), place);
}

template <typename Widget> Widget *LightGroup::addNamed(const QString &name, const QRect &place)
{
    auto *widget = new Widget(this);
    widget->setObjectName(name);
    widget->setGeometry(place);
    return widget;
}

void LightGroup::buildMode()
{
    auto *box = add<MyConmboBox>("LightMod", ModePlace);
    const char *const defaults[LightModeCount] = {"关闭", "彩色流动", "单色呼吸", "混色常亮",
                                                  "霓虹", "混彩呼吸", "新建项目"};
    for (const char *text : defaults)
        box->addItem(QString::fromUtf8(text));
    box->setProperty("nameKey", QString::fromLatin1(names_.modeKey));
    mode_ = box;
}

void LightGroup::buildScales()
{
    const auto slider = [this](const char *name, const QRect &place, const char *nameKey) {
        auto *made = add<MySlider>(name, place);
        made->setOrientation(Qt::Horizontal);
        made->setRange(1, LightScaleTop);
        made->setPageStep(1);
        made->setProperty("nameKey", QString::fromLatin1(nameKey));
        return made;
    };
    const auto box = [this](const char *name, const QRect &place) {
        auto *made = addNamed<MySpinBox>(QLatin1String(name), place);
        made->setRange(1, LightScaleTop);
        made->setFocusPolicy(Qt::NoFocus);
        made->setReadOnly(true);
        made->setButtonSymbols(QAbstractSpinBox::NoButtons);
        made->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return made;
    };
    brightnessCaption_ = add<QLabel>("brightnessCaption", BrightnessCaptionPlace);
    speedCaption_ = add<QLabel>("speedCaption", SpeedCaptionPlace);
    brightnessCaption_->setText(QStringLiteral("亮度"));
    speedCaption_->setText(QStringLiteral("速度"));
    auto *brightnessLine = addNamed<QLabel>(QLatin1String(names_.brightnessLine), BrightnessPlace);
    auto *speedLine = addNamed<QLabel>(QLatin1String(names_.speedLine), SpeedPlace);
    auto *brightness = slider("horizontalLight", BrightnessPlace, names_.brightnessKey);
    auto *speed = slider("horizontalSpeed", SpeedPlace, names_.speedKey);
    brightness_ = {
        {brightnessCaption_, brightness, box(names_.brightnessBox, BrightnessBoxPlace), brightnessLine},
        device_.owner()};
    speed_ = {{speedCaption_, speed, box(names_.speedBox, SpeedBoxPlace), speedLine}, device_.owner()};
}

void LightGroup::buildColor()
{
    customCaption_ = add<QLabel>("customCaption", CustomPlace);
    presetCaption_ = add<QLabel>("presetCaption", PresetsPlace);
    previewCaption_ = addNamed<QLabel>(QLatin1String(names_.previewCaption), PreviewCaptionPlace);
    customCaption_->setText(QStringLiteral("自定义颜色"));
    presetCaption_->setText(QStringLiteral("预设"));
    previewCaption_->setText(QStringLiteral("预览"));
    field_ = addNamed<HueField>(QLatin1String(names_.colorField), FieldPlace);
    field_->setProperty("nameKey", QStringLiteral("light ColorField"));
    swatch_ = add<QLabel>("Preview", SwatchPlace);
    colorControls_ = {customCaption_, presetCaption_, previewCaption_, field_, swatch_};
}

void LightGroup::buildChannels()
{
    for (int i = 0; i < Channels; ++i) {
        const ChannelRow &row = ChannelRows[i];
        const int top = ChannelTop + i * ChannelPitch;
        const auto withLetter = [&row](const char *before, const char *behind) {
            return (QByteArray(before) + row.letter + behind);
        };
        auto *caption = add<QLabel>(withLetter("caption", ""), {ChannelCaptionX, top, 20, 32});
        caption->setText(QLatin1String(row.captionKey));
        const auto step = [&](const char *name, int x, const char *key) {
            auto *button = add<QToolButton>(withLetter(name, ""), {QPoint(x, top), StepSize});
            button->setProperty("nameKey", QString::fromLatin1(key));
            button->setFocusPolicy(Qt::TabFocus);
            steps_.push_back(button);
            colorControls_.push_back(button);
        };
        step("Reduce", ReduceX, row.lessKey);
        auto *box = add<MySpinBox>(withLetter("", "SpinBox"), {BoxX, top + 1, 48, 30});
        step("Add", AddX, row.moreKey);
        box->setRange(0, 255);
        box->setButtonSymbols(QAbstractSpinBox::NoButtons);
        box->setAlignment(Qt::AlignCenter);
        box->setKeyboardTracking(false); // a number that is typed is one edit
        box->setProperty("nameKey", QString::fromLatin1(row.nameKey));
        const auto index = std::size_t(i);
        channelCaptions_[index] = caption;
        channels_[index] = box;
        colorControls_.push_back(caption);
        colorControls_.push_back(box);
    }
}

void LightGroup::buildPresets()
{
    for (std::size_t i = 0; i < Presets.size(); ++i) {
        const Preset &preset = Presets[i];
        auto *button = new PresetButton(QColor(preset.red, preset.green, preset.blue), this);
        button->setObjectName(named((QByteArray("toolButtonColor") + preset.letter).constData()));
        button->setGeometry(QRect(QPoint(PresetsPlace.x() + int(i) % PresetColumns * PresetStep,
                                         PresetTop + int(i) / PresetColumns * PresetStep),
                                  PresetExtent));
        button->setProperty("nameKey", QString::fromLatin1(preset.nameKey));
        connect(button, &QToolButton::clicked, this, [this, button] {
            if (mayChange())
                setColor(button->color());
        });
        presets_.push_back(button);
        colorControls_.push_back(button);
    }
}

// A code that is not whole when the field is left or the return key pressed becomes that of the colour.
class LightGroup::CodeValidator : public QRegularExpressionValidator
{
public:
    explicit CodeValidator(const LightGroup &group)
        : QRegularExpressionValidator(QRegularExpression(QStringLiteral("#?[0-9A-Fa-f]{6}")), group.hex_)
        , group_(group)
    {
    }
    void fixup(QString &code) const override { code = codeOf(group_.color()); }

private:
    const LightGroup &group_;
};

void LightGroup::buildHex()
{
    hex_ = add<QLineEdit>("HexColor", HexPlace);
    hex_->setMaxLength(7);
    hex_->setValidator(new CodeValidator(*this));
    hex_->setProperty("nameKey", QStringLiteral("light ColorCode"));
    connect(hex_, &QLineEdit::editingFinished, this, &LightGroup::takeHex);
    // A screen reader sets the whole text and never ends an edit.
    connect(hex_, &QLineEdit::textEdited, this, [this] { hexIsEdited_ = true; });
    connect(hex_, &QLineEdit::textChanged, this, [this] {
        if (!std::exchange(hexIsEdited_, false) && hex_->hasAcceptableInput())
            takeHex();
    });
    colorControls_.push_back(hex_);
}

void LightGroup::applyStyle()
{
    heading_.applyStyle();
    styleComboBox(mode_, style::pictureFolder(QStringLiteral("Sensor")));
    brightness_.applyStyle();
    speed_.applyStyle();
    const QString dim = style::label(style::color("LinEditColorSecond"));
    for (QLabel *caption : {customCaption_, presetCaption_, previewCaption_})
        caption->setStyleSheet(dim);
    for (QLabel *caption : channelCaptions_)
        caption->setStyleSheet(style::label(style::color("LabelColor")));
    for (MySpinBox *box : channels_)
        box->setStyleSheet(style::numberBox());
    for (QAbstractButton *button : steps_)
        button->setStyleSheet(style::titleButton(style::pictureFolder(QStringLiteral("Sensor")),
                                                 button->objectName().startsWith(QLatin1String("Add"))
                                                     ? QStringLiteral("Add")
                                                     : QStringLiteral("Reduce")));
    hex_->setStyleSheet(style::lineEdit());
}

void LightGroup::setTexts(int language)
{
    heading_.setText(language::text(language::Section::light, names_.titleKey, language));
    showText(brightnessCaption_, "Brightness", language);
    showText(speedCaption_, "Speed", language);
    showText(customCaption_, "CustomColor", language);
    showText(presetCaption_, "Preset", language);
    showText(previewCaption_, "Preview", language);
    for (std::size_t i = 0; i < channelCaptions_.size(); ++i)
        showText(channelCaptions_[i], ChannelRows[i].captionKey, language);
    const QSignalBlocker silent(mode_);
    for (int i = 0; i < mode_->count(); ++i) {
        const QString mode = language::choice("LightModeOptions", QString::number(i), language);
        if (!mode.isEmpty())
            mode_->setItemText(i, mode);
    }
}

// ---- What is shown ------------------------------------------------------------------------------

void LightGroup::setState(const LightState &state)
{
    brightness_.set(state.brightness + 1);
    speed_.set(state.speed + 1);
    paintColor(state.color);
    accepted_.color = state.color;
    if (state.mode >= 0 && state.mode < mode_->count()) { // the byte of a device may be none of the list
        accepted_.mode = state.mode;
        mode_->setCurrentIndex(state.mode);
    }
    showPreview();
}

void LightGroup::enableSliders(bool enabled)
{
    brightness_.setEnabled(enabled);
    speed_.setEnabled(enabled);
}

void LightGroup::showMode(int mode)
{
    if (mode < 0 || mode >= LightModeCount)
        return;
    const ModeControls &controls = ModeRows[std::size_t(mode)];
    brightness_.setShown(controls.brightness);
    speed_.setShown(controls.speed);
    for (QWidget *control : colorControls_)
        control->setVisible(controls.color);
    preview_->setGeometry(controls.color ? PreviewBesideColor : PreviewAlone);
    showPreview();
}

QColor LightGroup::color() const
{
    return {channels_[0]->value(), channels_[1]->value(), channels_[2]->value()};
}

void LightGroup::paintColor(const QColor &color)
{
    const int parts[Channels] = {color.red(), color.green(), color.blue()};
    for (int i = 0; i < Channels; ++i)
        showChannel(i, parts[i]);
    showColor();
}

void LightGroup::showChannel(int channel, int value)
{
    MySpinBox *box = channels_[std::size_t(channel)];
    const QSignalBlocker silent(box);
    box->setValue(value);
}

void LightGroup::showColor()
{
    const QColor now = color();
    swatch_->setStyleSheet(QString::fromLatin1(ColorSheet).arg(now.red()).arg(now.green()).arg(now.blue()));
    field_->setColor(now);
    {
        const QSignalBlocker silent(hex_);
        hex_->setText(codeOf(now));
    }
    for (PresetButton *preset : presets_)
        preset->setChecked(preset->color() == now);
    showPreview();
}

void LightGroup::showPreview()
{
    if (preview_)
        preview_->setLight({mode_->currentIndex(), color(), brightness_.value(), speed_.value()});
}

// ---- What the user changes ----------------------------------------------------------------------

// Reads a record that the last read did not get, and shows it with the change that is about to be
// written. False when it is silent still: then nothing may be written.
bool LightGroup::prepare(const std::function<void()> &showChange)
{
    if (device_.isKnown())
        return true;
    if (!device_.read())
        return false;
    const PageFilling filling(LightPageBusy);
    setState(device_.state());
    showChange();
    showPreview();
    return true;
}

bool LightGroup::chooseMode(int mode)
{
    const EditResult result = edit(
        LightPageBusy, mode_,
        [this, mode] {
            return prepare([this, mode] { mode_->setCurrentIndex(mode); }) && device_.writeMode(mode);
        },
        [this] { mode_->setCurrentIndex(accepted_.mode); });
    if (result == EditResult::Written)
        accepted_.mode = mode;
    if (result != EditResult::Refused)
        showMode(mode);
    return result == EditResult::Written;
}

void LightGroup::changeBrightness(int value)
{
    brightness_.change(LightPageBusy, value, [this, value] {
        return prepare([this, value] { brightness_.show(value); }) && device_.writeBrightness(value);
    });
    showPreview();
}

void LightGroup::changeSpeed(int value)
{
    speed_.change(LightPageBusy, value, [this, value] {
        return prepare([this, value] { speed_.show(value); }) && device_.writeSpeed(value);
    });
    showPreview();
}

// A record that is being shown blocks the boxes' signals instead of raising the page's flag.
void LightGroup::changeColor(int channel)
{
    showColor();
    const int value = channels_[std::size_t(channel)]->value();
    const auto showChange = [this, channel, value] {
        showChannel(channel, value);
        showColor();
    };
    const EditResult result = edit(
        this, [this, &showChange] { return prepare(showChange) && device_.writeColor(color()); },
        [this] { paintColor(accepted_.color); });
    if (result == EditResult::Written)
        accepted_.color = color();
}

bool LightGroup::mayChange() { return !UiArmed || CheckOnline(); }

void LightGroup::step(int channel, int by)
{
    MySpinBox *box = channels_[std::size_t(channel)];
    if (!mayChange() || !isReady()) {
        paintColor(color()); // without what was typed
        return;
    }
    bool isNumber = false;
    const int typed = box->cleanText().toInt(&isNumber);
    box->interpretText(); // a number that was typed counts, as an edit of its own
    if (isNumber && box->value() != typed)
        return; // refused
    box->setValue(box->value() + by);
}

// The steps begin at what the device has, and a colour is compared with it.
bool LightGroup::isReady()
{
    return !UiArmed || prepare([] {});
}

bool LightGroup::setColor(const QColor &color)
{
    if (!isReady())
        return false;
    const int parts[Channels] = {color.red(), color.green(), color.blue()};
    for (int i = 0; i < Channels; ++i) {
        MySpinBox *box = channels_[std::size_t(i)];
        box->setValue(parts[i]);
        if (box->value() != parts[i])
            return false; // refused, which the user has been told
    }
    return true;
}

void LightGroup::takeHex()
{
    QString code = hex_->text();
    if (!code.startsWith(QLatin1Char('#')))
        code.prepend(QLatin1Char('#'));
    const QColor typed(code);
    showColor(); // a notice takes the focus off the field, which would take the code again
    if (typed.isValid() && typed != color() && mayChange())
        setColor(typed);
}

bool LightGroup::holdsTyping(const QWidget *widget) const
{
    return widget && widget->parentWidget() == this &&
           (qobject_cast<const QAbstractSpinBox *>(widget) || widget == hex_);
}
