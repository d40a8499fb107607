// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LightGroup: the controls of one light: mode, brightness, speed and colour, with a preview of what it does.
// The page has one for the mouse and one for its receiver; they differ in the names of their widgets and in
// the device that they write. A refused edit goes back to the last value that the device took. Main thread.
#pragma once

#include "lighting/GroupHeading.h"
#include "lighting/LightDevice.h"

#include <QWidget>
#include <array>
#include <functional>
#include <vector>

class HueField;
class LightPreview;
class MySpinBox;
class PresetButton;
class QAbstractButton;
class QComboBox;
class QLabel;
class QLineEdit;

// The names by which the page and its tests find the widgets. Those that are not here have the suffix behind
// the name of the mouse's widget.
struct LightNames {
    const char *suffix;
    const char *brightnessLine, *speedLine; // in place of a slider that cannot be set
    const char *brightnessBox, *speedBox;
    const char *previewCaption, *colorField;
    const char *titleKey, *titleDefault;
    const char *modeKey, *brightnessKey, *speedKey; // of the names for those who do not see the controls
};
extern const LightNames MouseLightNames;
extern const LightNames ReceiverLightNames;

class LightGroup : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize Size{800, 212};
    static constexpr int Channels = 3; // red, green, blue

    LightGroup(const LightNames &names, LightDevice &device, QWidget *parent);
    void applyStyle();
    void setTexts(int language);

    // Shows what the device has. Nothing is written; the page's busy flag is set meanwhile.
    void setState(const LightState &state);
    void enableSliders(bool enabled);
    // Applies the table of controls; a mode that is none changes nothing.
    void showMode(int mode);

    // What the slots of the page do. chooseMode() is true when the device has taken the mode.
    bool chooseMode(int mode);
    void moveBrightness(int value) { brightness_.follow(value); }
    void changeBrightness(int value);
    void moveSpeed(int value) { speed_.follow(value); }
    void changeSpeed(int value);
    void changeColor(int channel);
    void step(int channel, int by);
    // All three channels, each with a write of its own when it changes; stops at one that is refused, and is
    // then false.
    bool setColor(const QColor &color);

    QColor color() const;
    // False when the pages take input and the mouse is away, which the user is then told.
    static bool mayChange();
    HueField *field() const { return field_; }
    bool holdsTyping(const QWidget *widget) const; // one of the boxes that take text

private:
    class CodeValidator;

    QString named(const char *name) const;
    template <typename Widget> Widget *add(const char *name, const QRect &place);
    template <typename Widget> Widget *addNamed(const QString &name, const QRect &place);
    void buildMode();
    void buildScales();
    void buildColor();
    void buildChannels();
    void buildPresets();
    void buildHex();
    void takeHex();
    bool isReady();
    bool prepare(const std::function<void()> &showChange);
    void showChannel(int channel, int value);
    void paintColor(const QColor &color);
    void showColor();
    void showPreview();

    const LightNames &names_;
    LightDevice &device_;
    GroupHeading heading_;
    QComboBox *mode_ = nullptr;
    QLabel *brightnessCaption_ = nullptr;
    QLabel *speedCaption_ = nullptr;
    LightScale brightness_;
    LightScale speed_;
    HueField *field_ = nullptr;
    QLabel *customCaption_ = nullptr;
    QLabel *presetCaption_ = nullptr;
    QLabel *previewCaption_ = nullptr;
    QLabel *swatch_ = nullptr;
    QLineEdit *hex_ = nullptr;
    bool hexIsEdited_ = false; // by the user, while its text changes
    LightPreview *preview_ = nullptr;
    std::array<QLabel *, Channels> channelCaptions_{};
    std::array<MySpinBox *, Channels> channels_{};
    std::vector<QAbstractButton *> steps_;
    std::vector<PresetButton *> presets_;
    std::vector<QWidget *> colorControls_; // all that a mode without a colour hides
    LightState accepted_;
};
