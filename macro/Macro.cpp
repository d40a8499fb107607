// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/Macro.h"

#include "device/DeviceState.h"
#include "environment/MacroName.h"
#include "hub/PostMsg.h"
#include "keys/KeyVocabulary.h"
#include "macro/CycleChoice.h"
#include "macro/EventEditor.h"
#include "macro/InsertionChoice.h"
#include "macro/MacroDeviceSync.h"
#include "macro/MacroExchange.h"
#include "macro/MacroTexts.h"
#include "macro/MouseButtonNames.h"
#include "macro/RecordingSession.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/FirstShow.h"
#include "presentation/Notices.h"
#include "presentation/QuestionDialog.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Macro.h"

#include <QKeyEvent>

using namespace macro;
using namespace macrotexts;

namespace
{

constexpr int LongestDelay = 65535;

template <typename Form> std::unique_ptr<Form> formOn(QWidget *page)
{
    auto form = std::make_unique<Form>();
    form->setupUi(page);
    return form;
}

} // namespace

Macro::Macro(QWidget *parent)
    : QWidget(parent)
    , ui(formOn<Ui::Macro>(this))
    , look_(*ui, this)
    , macros_(ui->listWidgetHong)
    , events_(ui->listWidgetKey)
    , cycle_(new CycleChoice({ui->ReNumber, ui->ReUntil, ui->ReUntilLoose, ui->ReUntilClick, ui->NumberEdit},
                             this))
    , recording_(new RecordingSession(
          {ui->StartRecord,
           ui->StopRecord,
           ui->recordFrame,
           ui->recordMark,
           {ui->AutoInsertDelay, ui->AutoInsertDelayLabel, ui->DefaultDelay, ui->ReNumber, ui->ReUntil,
            ui->ReUntilLabel, ui->ReUntilLoose, ui->ReUntilLooseLabel, ui->ReUntilClick,
            ui->ReUntilClickLabel, ui->ChooseEvent},
           {ui->DelayTime, ui->NumberEdit, ui->listWidgetHong}},
          this))
    , editor_(new EventEditor(
          events_, [this] { return !shown_.isEmpty(); }, this))
    , insertions_(new InsertionChoice(ui->ChooseEvent, this))
{
    for (QLabel *hint : {ui->noMacros, ui->noEvents})
        hint->setAttribute(Qt::WA_TransparentForMouseEvents); // it lies over the list
    connectSignals();
    onFirstShow(this, [this] { applyStyle(); });
    setTexts(LanguageIndex);
}

Macro::~Macro() = default;

void Macro::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigSetMacroPage()), this, SLOT(SlotSetMacroPage()));
    connect(hub, SIGNAL(SigMacroDownLoadData(QString, int)), this, SLOT(SlotMacroDownLoadData(QString, int)));
    connect(hub, SIGNAL(SigButtonToMacro(FlashDataMap, int)), this,
            SLOT(SlotButtonToMacro(FlashDataMap, int)));
    connect(recording_, &RecordingSession::keyEvent, this, &Macro::UpdateCapslockTip);
    connect(cycle_, &CycleChoice::changed, this, [this] {
        cycleChanged_ = true;
        markUnsaved();
    });
    connect(editor_, &EventEditor::changed, this, [this](bool isTold) {
        eventsChanged_ = eventsChanged_ || isTold;
        markUnsaved();
    });
    connect(ui->listWidgetHong, &QListWidget::itemSelectionChanged, this, &Macro::followSelection);
    connect(ui->listWidgetKey, &QListWidget::itemDoubleClicked, this, &Macro::on_Amend_clicked);
    // Behind the drag's own event loop, which keeps the pointer from a notice.
    connect(
        ui->listWidgetKey, &EventRows::dropped, this,
        [this](int place) { moveSelected(rowediting::stepsTo(events_.editing(), place)); },
        Qt::QueuedConnection);
    for (QListWidget *list : std::initializer_list<QListWidget *>{ui->listWidgetHong, ui->listWidgetKey})
        list->installEventFilter(this);
}

void Macro::applyStyle()
{
    look_.applyStyle();
    insertions_->applyStyle();
    showState();
}

// ---- Texts --------------------------------------------------------------------------------------

void Macro::SlotAllLanguage(int index)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the names change before it is used
    const MouseButtonTexts before = MouseButtonNames();
    setMouseButtonNames(index);
    renameRows(before);
    setTexts(index);
}

void Macro::renameRows(const MouseButtonTexts &before)
{
    events_.show(withButtonNames(events_.rows(), before), events_.selectedRow());
    for (Draft &draft : drafts_)
        draft.rows = withButtonNames(draft.rows, before);
}

void Macro::setTexts(int language)
{
    look_.setTexts(language);
    insertions_->setTexts(language);
    showState();
}

// ---- Macros -------------------------------------------------------------------------------------

void Macro::ask(const char *textKey) { notice::ask<ExeIsRun>(this, BindingNoticeOffset, text(textKey)); }

bool Macro::refusesWhileRecording()
{
    if (MacroRecording)
        ask("DialogStopRecordFirst");
    return MacroRecording;
}

// A file past the limits is listed, but what is in it is not replaced by a save.
bool Macro::isUnreadable() const
{
    return !shown_.isEmpty() && events_.isEmpty() && !unsaved_ && macroExists(shown_) && !loadMacro(shown_);
}

bool Macro::refusesUnreadable()
{
    const bool unreadable = isUnreadable();
    if (unreadable)
        ask("MacroUnreadable");
    return unreadable;
}

bool Macro::refusesName(const QString &name)
{
    // The file may have come while the page showed.
    if (!macros_.contains(name) && isMacroName(name) && macroExists(name))
        macros_.show(macroNames());
    const bool taken = macros_.contains(name);
    if (taken)
        notice::ask<SameMacro>(this, BindingNoticeOffset);
    return taken || !isMacroName(name);
}

void Macro::followSelection()
{
    if (macros_.selected() == shown_)
        return;
    keepDraft();
    showMacro(macros_.selected());
}

// A click reads the file again, unless that would drop what is not saved.
void Macro::on_listWidgetHong_clicked()
{
    if (!unsaved_ && !shown_.isEmpty())
        showMacro(shown_);
    else if (unsaved_)
        markUnsaved();
}

void Macro::keepDraft()
{
    if (unsaved_)
        drafts_[shown_] = {events_.rows(), cycle_->mode(), cycle_->isMuted(), eventsChanged_, cycleChanged_};
}

void Macro::showMacro(const QString &name)
{
    shown_ = name;
    ui->Save->setEnabled(false);
    const auto draft = drafts_.find(name);
    const bool isDraft = draft != drafts_.end();
    unsaved_ = isDraft;
    eventsChanged_ = isDraft && draft->eventsChanged;
    cycleChanged_ = isDraft && draft->cycleChanged;
    if (isDraft) {
        events_.show(draft->rows);
        cycle_->setMode(draft->cycle);
        cycle_->mute(draft->isMuted);
        drafts_.erase(draft);
        markUnsaved();
    } else {
        cycle_->mute(true);
        LoadMacroFile(name);
    }
    ui->listWidgetKey->scrollToTop();
    showState();
}

// The mode stays muted after a file without a first line.
void Macro::LoadMacroFile(const QString &name)
{
    const std::optional<MacroText> text = loadMacro(name);
    events_.show(text ? text->rows : MacroRows());
    if (!text || !text->cycle)
        return;
    cycle_->setMode(*text->cycle);
    cycle_->mute(false);
}

bool Macro::SaveMacroFile(const QString &name) { return saveMacro(name, cycle_->mode(), events_.rows()); }

// Selects the new macro, whose file holds what is shown of it.
void Macro::addMacro(const QString &name, const MacroRows &rows)
{
    keepDraft();
    shown_ = name; // so that the selection reads nothing
    macros_.append(name);
    macros_.select(name);
    events_.show(rows);
    unsaved_ = eventsChanged_ = cycleChanged_ = false;
    markSaved();
}

void Macro::CreateMewMacro()
{
    if (refusesWhileRecording())
        return;
    QuestionDialog dialog;
    dialog.openOver(this, BindingNoticeOffset);
    const QString name = dialog.name();
    if (name.isEmpty() || refusesName(name))
        return;
    createMacro(name);
    addMacro(name, {});
    cycle_->setMode(CycleOnce);
}

void Macro::RenameMacro()
{
    if (refusesWhileRecording() || shown_.isEmpty())
        return;
    QuestionDialog dialog;
    dialog.openOver(this, BindingNoticeOffset);
    const QString name = dialog.name();
    const QString before = shown_; // a read may have changed the selection while the dialog was open
    if (name.isEmpty() || before.isEmpty() || refusesName(name) || !renameMacro(before, name))
        return;
    shown_ = name;
    macros_.rename(before, name);
    moveMarks(before, name);
    saves_.rename(before, name);
    emit PostMsg::instance()->SigMacroRename(before, name);
}

void Macro::DeleteMacro()
{
    if (refusesWhileRecording() || shown_.isEmpty())
        return;
    if (!notice::ask<DeleteConfirm>(this, BindingNoticeOffset) || shown_.isEmpty())
        return;
    const QString name = shown_;
    removeMacro(name);
    emit PostMsg::instance()->SigDeleteMacroButton(text("MacroSeond") + name);
    dropMarks(name);
    saves_.forget(name);
    drafts_.remove(name); // a read during the notices deselects the macro, which makes one
    shown_.clear();
    macros_.remove(name);
    macros_.select({});
    showMacro({});
}

void Macro::ExPortMacro()
{
    if (!refusesWhileRecording() && !shown_.isEmpty() && !refusesUnreadable())
        askAndExport(this, {shown_, cycle_->mode(), events_.rows()});
}

// The radio buttons show the imported mode only when the macro is clicked.
void Macro::InPortMacro()
{
    if (refusesWhileRecording())
        return;
    const std::optional<ExportedMacro> imported = askAndImport(this);
    if (!imported || refusesName(imported->name) || !createMacro(imported->name))
        return;
    if (!saveMacro(imported->name, imported->cycle, imported->rows)) {
        removeMacro(imported->name);
        return;
    }
    addMacro(imported->name, imported->rows);
}

std::vector<ListCommand> Macro::macroCommands()
{
    return {{text("MacroExport"), [this] { ExPortMacro(); }},
            {text("Rename"), [this] { RenameMacro(); }, Qt::Key_F2},
            {text("Delete"), [this] { DeleteMacro(); }, Qt::Key_Delete}};
}

void Macro::on_listWidgetHong_customContextMenuRequested(const QPoint &place)
{
    if (ui->listWidgetHong->itemAt(place))
        showListMenu(ui->listWidgetHong, place, macroCommands());
    else
        showListMenu(ui->listWidgetHong, place,
                     {{text("NewMacro"), [this] { CreateMewMacro(); }},
                      {text("MacroImport"), [this] { InPortMacro(); }}});
}

// ---- The mouse's macros ---------------------------------------------------------------------------

void Macro::SlotMacroDownLoadData(QString MacroName, int index)
{
    const QString name = MacroName.remove(QChar());
    if (!sendSaved(name, index))
        setMissed(name, true);
}

void Macro::SlotButtonToMacro(FlashDataMap DataMap, int KeyNumer)
{
    const Taken taken = takeFromMouse(DataMap, KeyNumer);
    if (!taken.name.isEmpty()) {
        if (!macros_.contains(taken.name))
            macros_.insertBehindSelected(taken.name);
        if (!recording_->isLocked()) // a recording keeps its macro
            macros_.select({});
        showState();
    }
    emit PostMsg::instance()->SigAddMacroButton();
}

// ---- Saving -------------------------------------------------------------------------------------

bool Macro::isUnsaved(const QString &name) const
{
    return drafts_.contains(name) || (unsaved_ && name == shown_);
}

void Macro::holdUnsaved()
{
    unsaved_ = true;
    hold(shown_);
    macros_.setUnsaved(shown_, true);
    showState();
}

void Macro::markUnsaved()
{
    if (shown_.isEmpty())
        return;
    ui->Save->setEnabled(true);
    holdUnsaved();
}

void Macro::markSaved()
{
    unsaved_ = eventsChanged_ = cycleChanged_ = false;
    ui->Save->setEnabled(false);
    macros_.setUnsaved(shown_, false);
    showState();
}

// The file stays held until the mouse has the new rows, since a read before would bring the old ones back.
void Macro::on_Save_clicked()
{
    if (refusesWhileRecording())
        return;
    ui->Save->setEnabled(false);
    const QString name = shown_;
    if (name.isEmpty() || refusesUnreadable())
        return;
    if (!SaveMacroFile(name)) {
        markUnsaved();
        return;
    }
    const bool newEvents = eventsChanged_;
    const bool newCycle = cycleChanged_;
    const bool tooLong = !fitsBlock(events_.rows());
    markSaved();
    if (newEvents && tooLong)
        notice::ask<KeyNumberLimit>(this, BindingNoticeOffset);
    releaseSaved(saves_.send(name, newEvents, newCycle));
}

void Macro::releaseSaved(const QString &name)
{
    if (!isUnsaved(name) && !saves_.contains(name))
        release(name);
}

void Macro::on_Discard_clicked()
{
    markSaved();
    releaseSaved(shown_);
    showMacro(shown_);
}

void Macro::showState()
{
    look_.show({rowediting::summaryOf(events_.rows()), !shown_.isEmpty(), isUnreadable(), unsaved_,
                recording_->isLocked()});
}

// ---- Recording ----------------------------------------------------------------------------------

void Macro::on_StartRecord_clicked()
{
    if (shown_.isEmpty()) {
        ask("DialogSelectMacroFirst");
        return;
    }
    if (refusesUnreadable())
        return;
    ui->listWidgetKey->setFocus();            // not where the list of macros, disabled, would send it
    ui->listWidgetKey->setDragEnabled(false); // a drag takes the keys
    recording_->start();
    eventsChanged_ = true;
    events_.show({});
    holdUnsaved();
}

void Macro::UpdateCapslockTip(int keyCode, bool downOrUp, bool)
{
    if (!MacroRecording)
        return;
    const std::optional<int> fixedDelay =
        ui->AutoInsertDelay->isChecked() ? std::nullopt : std::optional<int>(ui->DelayTime->value());
    const Recorder::Rows rows = recording_->take(keyCode, downOrUp, fixedDelay);
    if (rows.delayMs)
        AddDelayRow(*rows.delayMs);
    if (rows.key)
        AddKeyRow(*rows.key, downOrUp);
    if (recording_->isFull())
        recording_->endFull();
    showState();
}

void Macro::on_StopRecord_clicked()
{
    endRecording(RecordingPanel::Ending::Stopped);
    if (eventsChanged_)
        markUnsaved();
    else // another macro was made behind the 70th event
        ui->Save->setEnabled(!shown_.isEmpty());
}

// A recording that is left does not offer to save.
void Macro::SlotSetMacroPage()
{
    if (!recording_->isLocked())
        return;
    endRecording(RecordingPanel::Ending::Left);
    ui->Save->setEnabled(false);
}

void Macro::endRecording(RecordingPanel::Ending ending)
{
    if (ui->StopRecord->hasFocus())
        ui->listWidgetKey->setFocus(); // not where the hidden button would send it
    recording_->end(ending);
    ui->listWidgetKey->setDragEnabled(true);
    showState();
}

void Macro::on_DelayTime_valueChanged(int milliseconds)
{
    if (milliseconds > LongestDelay)
        ui->DelayTime->setValue(LongestDelay);
}

// ---- Events -------------------------------------------------------------------------------------

void Macro::AddKeyRow(const QString &name, bool press)
{
    if (shown_.isEmpty())
        return;
    events_.append(keyRow(name, press));
    events_.select(ui->listWidgetKey->count() - 1);
}

void Macro::AddDelayRow(qint64 milliseconds)
{
    if (shown_.isEmpty())
        return;
    events_.append(delayRow(quint32(milliseconds)));
    events_.select(ui->listWidgetKey->count() - 2);
}

void Macro::InsertKeyRow(const QString &name, bool press) { editor_->insertKey(name, press); }

void Macro::InsertClickRows(const QString &name) { editor_->insertClick(name); }

void Macro::InsertDelayRow(int milliseconds) { editor_->insertDelay(milliseconds); }

void Macro::on_listWidgetKey_itemChanged()
{
    eventsChanged_ = true;
    markUnsaved();
}

void Macro::on_ChooseEvent_activated(int index)
{
    if (index < 0 || index >= int(std::size(Insertions)))
        return;
    ui->ChooseEvent->setCurrentIndex(0); // so that the same one can be chosen again by the keyboard
    if (!refusesUnreadable())
        editor_->insert(Insertions[index]);
}

void Macro::on_Amend_clicked()
{
    if (!refusesWhileRecording())
        editor_->amend();
}

void Macro::on_DeleteKey_clicked()
{
    if (!refusesWhileRecording() && !shown_.isEmpty() && !refusesUnreadable())
        editor_->remove();
}

void Macro::moveSelected(int steps)
{
    if (!refusesWhileRecording() && !shown_.isEmpty() && !refusesUnreadable())
        editor_->move(steps);
}

std::vector<ListCommand> Macro::eventCommands()
{
    return {{text("Modify"), [this] { on_Amend_clicked(); }, Qt::Key_F2},
            {text("MoveUp"), [this] { moveSelected(-1); }, Qt::ALT + Qt::Key_Up},
            {text("MoveDown"), [this] { moveSelected(1); }, Qt::ALT + Qt::Key_Down},
            {text("Delete"), [this] { on_DeleteKey_clicked(); }, Qt::Key_Delete}};
}

void Macro::on_listWidgetKey_customContextMenuRequested(const QPoint &place)
{
    if (!recording_->isLocked() && ui->listWidgetKey->itemAt(place))
        showListMenu(ui->listWidgetKey, place, eventCommands());
}

// ---- The page -----------------------------------------------------------------------------------

bool Macro::eventFilter(QObject *watched, QEvent *event)
{
    return event->type() == QEvent::KeyPress &&
           runListCommand(*static_cast<QKeyEvent *>(event),
                          watched == ui->listWidgetKey ? eventCommands() : macroCommands());
}

// The folder may have changed meanwhile.
void Macro::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    macros_.show(macroNames());
    followSelection();
    showState();
}

void Macro::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        SlotSetMacroPage();
}
