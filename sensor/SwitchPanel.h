// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SwitchPanel: the base of the panels that hold one switch with a caption and a tip. The panel goes back
// when the mouse does not answer. Main thread.
#pragma once

#include <QFrame>
#include <cstdint>
#include <memory>

class QToolButton;

namespace Ui
{
class SwitchPanel;
}

struct SwitchRow {
    const char *buttonName;
    const char *defaultCaption;
    const char *captionKey; // of the section "sensor"
    const char *tipKey;
    int tipX[4]; // pixels, by the width of the languages: index 0, 1 and 2, 3, 4 to 7
    bool (*write)(uint8_t value);
};

class SwitchPanel : public QFrame
{
    Q_OBJECT

public:
    ~SwitchPanel() override;

    // Silent.
    void SetChecked(bool checked);
    // The host's own slot of this name calls it.
    void SlotAllLanguage(int index);
    QToolButton *button() const;

protected:
    SwitchPanel(const SwitchRow &row, QWidget *parent);
    void choose(bool checked);

private:
    void applyStyle();
    void placeTip(int width); // index into tipX

    const SwitchRow &row_;
    std::unique_ptr<Ui::SwitchPanel> ui;
};
