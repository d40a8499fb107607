// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Buttoninterface: the page of the button bindings. It shows a picture of the mouse with markers and a list
// of its buttons; a click on a button covers the list with the functions, a click on a function binds it. The
// page also hosts the profile box, the debounce time and the buttons of export, import and factory reset. It
// owns the one Worker. Main thread; the slots that take a record from a read run while the emitting thread
// waits.
#pragma once

#include "binding/ButtonBindings.h"
#include "device/record/DeviceAllInfo.h"

#include <QWidget>
#include <functional>
#include <memory>

class BoundMacros;
class ButtonList;
class FunctionPages;
class ProfileBox;
class Worker;

namespace Ui
{
class Buttoninterface;
}

class Buttoninterface : public QWidget
{
    Q_OBJECT

public:
    explicit Buttoninterface(QWidget *parent = nullptr);
    ~Buttoninterface() override;

    // Loads the pictures of this device's page into the toolkit's cache.
    void loadPictures(const DeviceAllInfo &device) const;
    bool SetMediaAction(int button, uint8_t code);
    bool SetComboAction(int button, const QString &keys);
    // Sets the caption of a button from its three bytes and from the record's key sequence and macro. A macro
    // is handed to the page of the macros, which brings it into the folder.
    void ShowBinding(int button, int actionClass, int first, int second, const FlashDataMap &record);
    // The number of the cycle mode in the first line of the macro's file; empty without a file.
    QString ReadCycle(const QString &name) const;
    // None while the mouse is off line and for a macro without a readable file.
    std::optional<MacroBlock> BuildMacroBlock(const QString &name) const;

public slots:
    void SlotUpDataButtonUIButton(FlashDataMap DataMap);
    void SlotUpDataButtonUIB(FlashDataMap DataMap);
    void SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable);
    void SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo);
    void SlotMouseIndex(int index);
    void SlotFormResetButton();
    void SlotAddMacroButton();
    // 0: the rows of the macro were saved. It waits, with the event loop running, and has each button that
    // plays the macro sent anew. 1: its cycle mode was saved.
    void SlotUpDataMacro(const QString &MacroName, int index);
    // The macro `Rename` is now called `Name`.
    void SlotMacroRename(const QString &Rename, const QString &Name);
    // MacroName: the caption of the buttons that played the macro that was deleted.
    void SlotDeleteMacroButton(const QString &MacroName);
    void SlotAllLanguage(int index);
    // Sends what is saved and waits to be sent, with its cycle mode. To be called while the mouse is still
    // held, before it is left.
    void sendWaitingMacros();

    void on_FireKey_clicked() { openRow(0); }
    void on_RightKey_clicked() { openRow(1); }
    void on_BackKey_clicked() { openRow(2); }
    void on_StartPause_clicked() { openRow(3); }
    void on_TopMusic_clicked() { openRow(4); }
    void on_BackMusic_clicked() { openRow(5); }
    void on_Button7_clicked() { openRow(6); }
    void on_Button8_clicked() { openRow(7); }
    void on_Button9_clicked() { openRow(8); }
    void on_Button10_clicked() { openRow(9); }
    void on_Button11_clicked() { openRow(10); }
    void on_Button12_clicked() { openRow(11); }

    void on_Number1_clicked() { pointAt(0); }
    void on_Number2_clicked() { pointAt(1); }
    void on_Number3_clicked() { pointAt(2); }
    void on_Number4_clicked() { pointAt(3); }
    void on_Number5_clicked() { pointAt(4); }
    void on_Number6_clicked() { pointAt(5); }
    void on_Number7_clicked() { pointAt(6); }
    void on_Number8_clicked() { pointAt(7); }
    void on_Number9_clicked() { pointAt(8); }
    void on_Number10_clicked() { pointAt(9); }
    void on_Number11_clicked() { pointAt(10); }
    void on_Number12_clicked() { pointAt(11); }

    void on_DPI_6_clicked(); // asks for the fire key's values first
    void on_DPI_8_clicked(); // asks for the keys first
    void on_DPI_10_clicked();
    void slotButtonClicked(bool checked); // of a macro's button

    void on_ProjectChoose_activated(int index);
    void on_ProjectChoose_currentIndexChanged(int) {} // the program fills the box, the user chose nothing
    void on_Reset_clicked();
    void on_OutputData_clicked();
    void on_ImportData_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void applyStyle();
    void stylePicture();
    void arrangeTabs();
    void connectSignals();

    void showRecord(const FlashDataMap &map);
    void showBindings(const FlashDataMap &map);
    void showCaption(int button, const KeyBinding &binding, const FlashDataMap &record);

    bool isLastLeft(std::size_t row) const;
    void refuseLastLeft();
    void openRow(std::size_t row);
    void pointAt(std::size_t row);
    void preselect(int button);
    void showFunctions();
    void showButtons();
    void leaveFunctions();
    void nameChosenRow();

    void choose(const binding::ActionRow &row);
    void openPanel(binding::Panel panel);
    void bindChosen(const binding::EncodedAction &action);
    bool bind(int button, const binding::EncodedAction &action);
    // The one way to a new binding. `write`: whether the mouse took it.
    bool bind(int button, const std::function<bool()> &write);
    int chosenButton() const; // -1 for none

    bool bindDefault(int button);

    std::unique_ptr<Ui::Buttoninterface> ui;
    ButtonList *list_ = nullptr;
    FunctionPages *functions_ = nullptr;
    ButtonBindings bindings_;
    std::unique_ptr<BoundMacros> macros_;
    std::unique_ptr<ProfileBox> profiles_;
    QString picture_ = QStringLiteral("mouse0.png");
    bool styled_ = false;
    int fireInterval_; // FireInterval, FireCount: as last accepted in their dialog
    int fireCount_;
    DeviceAllInfo shown_; // the device that the page was opened for
    std::unique_ptr<Worker> worker_;
};
