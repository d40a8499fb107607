// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macro: the page of the macros. It lists them, shows the events of the selected one, records events from the
// keyboard and edits them by hand. What is not saved is kept as a draft when another macro is selected. The
// page also sets the translated names of the mouse buttons, which the key vocabulary shares with the other
// pages. Main thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "keys/KeyVocabulary.h"
#include "macro/EventList.h"
#include "macro/ListCommands.h"
#include "macro/MacroList.h"
#include "macro/MacroLook.h"
#include "macro/RecordingPanel.h"
#include "macro/SavesUnderWay.h"

#include <QHash>
#include <QWidget>
#include <memory>

class CycleChoice;
class EventEditor;
class InsertionChoice;
class RecordingSession;

namespace Ui
{
class Macro;
}

class Macro : public QWidget
{
    Q_OBJECT

public:
    explicit Macro(QWidget *parent = nullptr);
    ~Macro() override;

    void CreateMewMacro();
    void DeleteMacro();
    void RenameMacro();
    void ExPortMacro();
    void InPortMacro();

    // Shows rows and cycle mode of the file. An empty file leaves the mode, and changes of the mode
    // unnoticed.
    void LoadMacroFile(const QString &name);
    bool SaveMacroFile(const QString &name);

    // Without a selected macro nothing is added.
    void AddKeyRow(const QString &name, bool press);
    void AddDelayRow(qint64 milliseconds);
    void InsertKeyRow(const QString &name, bool press);
    void InsertClickRows(const QString &name);
    void InsertDelayRow(int milliseconds);

public slots:
    // A key of a recording went down or up: virtual key, down, repeated.
    void UpdateCapslockTip(int keyCode, bool downOrUp, bool aotu);
    void SlotSetMacroPage();
    void SlotMacroDownLoadData(QString MacroName, int index);
    void SlotButtonToMacro(FlashDataMap DataMap, int KeyNumer);
    void SlotAllLanguage(int index);

    void on_NewHong_clicked() { CreateMewMacro(); }
    void on_DeleteHong_clicked() { DeleteMacro(); }
    void on_listWidgetHong_clicked();
    void on_listWidgetHong_customContextMenuRequested(const QPoint &place);
    void on_listWidgetKey_customContextMenuRequested(const QPoint &place);
    void on_listWidgetKey_itemChanged();
    void on_StartRecord_clicked();
    void on_StopRecord_clicked();
    void on_DelayTime_valueChanged(int milliseconds);
    void on_ChooseEvent_activated(int index);
    void on_Amend_clicked();
    void on_DeleteKey_clicked();
    void on_Discard_clicked();
    void on_Save_clicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    struct Draft {
        macro::MacroRows rows;
        int cycle;
        bool isMuted;
        bool eventsChanged;
        bool cycleChanged;
    };

    void applyStyle();
    void connectSignals();
    void renameRows(const MouseButtonTexts &before);
    void setTexts(int language);

    void followSelection();
    void showMacro(const QString &name);
    void keepDraft();
    void addMacro(const QString &name, const macro::MacroRows &rows);
    bool refusesName(const QString &name);
    bool refusesWhileRecording();
    bool refusesUnreadable();
    bool isUnreadable() const;
    void ask(const char *textKey); // a notice with this text of the section "macro"

    std::vector<ListCommand> macroCommands();
    std::vector<ListCommand> eventCommands();
    void moveSelected(int steps);

    bool isUnsaved(const QString &name) const;
    void releaseSaved(const QString &name);
    void holdUnsaved();
    void markUnsaved(); // and light up Save
    void markSaved();
    void showState();

    void endRecording(RecordingPanel::Ending ending);

    std::unique_ptr<Ui::Macro> ui;
    MacroLook look_;
    MacroList macros_;
    EventList events_;
    CycleChoice *cycle_;
    RecordingSession *recording_;
    EventEditor *editor_;
    InsertionChoice *insertions_;
    QString shown_;                // the macro whose rows are shown; empty for none
    QHash<QString, Draft> drafts_; // of macros that are not shown
    bool eventsChanged_ = false;
    bool cycleChanged_ = false;
    bool unsaved_ = false; // the shown macro
    SavesUnderWay saves_;
};
