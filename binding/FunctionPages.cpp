// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/FunctionPages.h"

#include "binding/ActionButton.h"
#include "binding/actions/BindingDecoder.h"
#include "environment/MacroName.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>

using namespace binding;

namespace
{

constexpr QSize FunctionSize{192, 32};
constexpr QSize DetailSize{130, 32}; // of a panel with more than FewDetails buttons
constexpr QSize ChoiceSize{192, 28}; // of the list of functions
constexpr int ChoiceTop = 34;
constexpr int ChoicePitch = 32;
constexpr int GroupGap = 5;
constexpr int Columns = 2;
constexpr QPoint TitlePlace{24, 10};
constexpr QPoint DetailPlace{24, 42};
constexpr int PanelWidth = 803;
constexpr int ButtonGap = 8;
constexpr int DetailPitch = 36;
constexpr int MacroColumns = (PanelWidth + ButtonGap) / (FunctionSize.width() + ButtonGap);
constexpr int LeastMacros = 7; // places of the panel of macros
constexpr int FillerHeight = 23;
constexpr int FewDetails = 8; // the most buttons of a panel with wide ones

constexpr Panel Panels[] = {Panel::Media,      Panel::Lights,   Panel::DpiLocks,
                            Panel::SideScroll, Panel::DpiSteps, Panel::Scroll};

ActionButton::Opens opensOf(const ActionRow &row)
{
    if (row.form == Form::Opener)
        return ActionButton::Opens::Panel;
    const bool asks = row.form == Form::Fire || row.form == Form::Combination;
    return asks ? ActionButton::Opens::Dialog : ActionButton::Opens::Nothing;
}

int detailCount(Panel panel)
{
    return int(std::count_if(ActionRows.begin(), ActionRows.end(),
                             [panel](const ActionRow &row) { return row.place == panel; }));
}

} // namespace

FunctionPages::FunctionPages(QStackedWidget *functions, QStackedWidget *panels)
    : QObject(functions)
    , functionStack_(functions)
    , panelStack_(panels)
    , functionGroup_(new QButtonGroup(this))
    , detailGroup_(new QButtonGroup(this))
{
    functionGroup_->setObjectName(QStringLiteral("FunctionGroup"));
    detailGroup_->setObjectName(QStringLiteral("DetailGroup"));
    addFunctions();
    for (const Panel panel : Panels)
        addPanel(panel);
    addMacroPanel();
    showPanel(Panel::Debounce);
}

QWidget *FunctionPages::page(Panel panel) const
{
    QStackedWidget *const stack = panel == Panel::Functions ? functionStack_ : panelStack_;
    return stack->findChild<QWidget *>(panelName(panel));
}

ActionButton *FunctionPages::addAction(const ActionRow &row, QWidget *parent)
{
    auto *made = new ActionButton(QLatin1String(row.widget), parent);
    (row.place == Panel::Functions ? functionGroup_ : detailGroup_)->addButton(made);
    connect(made, &QToolButton::clicked, this, [this, &row] { emit chosen(row); });
    buttons_[&row] = made;
    return made;
}

void FunctionPages::addFunctions()
{
    QWidget *const list = page(Panel::Functions);
    back_ = new QToolButton(list);
    back_->setObjectName(QStringLiteral("FunctionsBack"));
    back_->setGeometry(0, 0, 32, 32);
    title_ = new QLabel(list);
    title_->setObjectName(QStringLiteral("FunctionsTitle"));
    title_->setGeometry(40, 0, list->parentWidget()->width() - 40, 32);
    // Neighbours of the table that lead to the same make a group, which begins a line.
    QPoint place(0, ChoiceTop);
    const ActionButton *before = nullptr;
    for (const ActionRow &row : ActionRows) {
        if (row.place != Panel::Functions)
            continue;
        ActionButton *made = addAction(row, list);
        made->setOpens(opensOf(row));
        const bool newGroup = before && before->opens() != made->opens();
        if (newGroup || place.x() >= Columns * (ChoiceSize.width() + ButtonGap))
            place = {0, place.y() + ChoicePitch + (newGroup ? GroupGap : 0)};
        made->setGeometry({place, ChoiceSize});
        place.rx() += ChoiceSize.width() + ButtonGap;
        before = made;
    }
    onFirstShow(list, [this, list] { stylePanel(list); });
}

void FunctionPages::addPanel(Panel panel)
{
    QWidget *const ground = page(panel);
    titles_[panel] = new QLabel(ground);
    titles_[panel]->setGeometry({TitlePlace, QSize(PanelWidth, 24)});
    const bool isDense = detailCount(panel) > FewDetails;
    const QSize size = isDense ? DetailSize : FunctionSize;
    const int gap = isDense ? DetailPitch - DetailSize.height() : ButtonGap;
    const int columns = (PanelWidth + gap) / (size.width() + gap);
    int place = 0;
    for (const ActionRow &row : ActionRows) {
        if (row.place != panel)
            continue;
        const QPoint offset((place % columns) * (size.width() + gap), place / columns * DetailPitch);
        addAction(row, ground)->setGeometry({DetailPlace + offset, size});
        ++place;
    }
    onFirstShow(ground, [this, ground] { stylePanel(ground); });
}

void FunctionPages::addMacroPanel()
{
    QWidget *const ground = page(Panel::Macros);
    titles_[Panel::Macros] = new QLabel(ground);
    titles_[Panel::Macros]->setGeometry({TitlePlace, QSize(PanelWidth, 24)});
    auto *area = macroArea_ = new QScrollArea(ground);
    area->setGeometry({DetailPlace, QSize(PanelWidth, 3 * DetailPitch)});
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    auto *list = new QWidget;
    macroGrid_ = new QGridLayout(list);
    macroGrid_->setContentsMargins(0, 0, 0, 0);
    macroGrid_->setSpacing(DetailPitch - FunctionSize.height());
    macroGrid_->setHorizontalSpacing(ButtonGap);
    area->setWidget(list);
    onFirstShow(ground, [this, ground, area] {
        area->setStyleSheet(style::scrollArea());
        macrosStyled_ = true;
        stylePanel(ground);
    });
}

// ---- Looks and texts ----------------------------------------------------------------------------

void FunctionPages::stylePanel(QWidget *ground)
{
    const QString ink = style::color("ButtonColor");
    const QString pictures = style::pictureFolder(QStringLiteral("Buttoninterface"));
    const QString choice = style::stateButton(pictures, QStringLiteral("Choice"), ink, ink);
    const QString wide = style::stateButton(pictures, QStringLiteral("Function"), ink, ink);
    const QString narrow = style::stateButton(pictures, QStringLiteral("Detail"), ink, ink);
    for (ActionButton *each : ground->findChildren<ActionButton *>())
        each->setStyleSheet(each->size() == ChoiceSize     ? choice
                            : each->size() == FunctionSize ? wide
                                                           : narrow);
    for (QLabel *each : ground->findChildren<QLabel *>())
        each->setStyleSheet(style::heading());
    if (back_->parentWidget() == ground)
        back_->setStyleSheet(style::titleButton(pictures, QStringLiteral("Back")));
}

void FunctionPages::setLanguage(int index)
{
    for (const auto &[row, each] : buttons_)
        each->setText(actionText(*row, index));
    for (const auto &[panel, label] : titles_)
        label->setText(actionText(*openerOf(panel), index));
    back_->setToolTip(language::text(language::Section::common, "BackToButtons", index));
    back_->setAccessibleName(back_->toolTip());
}

void FunctionPages::setTitle(const QString &text)
{
    title_->ensurePolished();
    title_->setText(title_->fontMetrics().elidedText(text, Qt::ElideRight, title_->width()));
    title_->setToolTip(title_->text() == text ? QString() : text);
}

// ---- Selection ----------------------------------------------------------------------------------

Panel FunctionPages::panel() const
{
    for (int i = 0; i < PanelCount; ++i)
        if (panelStack_->currentWidget()->objectName() == panelName(Panel(i)))
            return Panel(i);
    return Panel::Debounce;
}

void FunctionPages::showPanel(Panel panel)
{
    QWidget *const wanted = page(panel);
    if (!wanted || wanted == panelStack_->currentWidget())
        return;
    const SoftChange opens(panelStack_, panelStack_->rect());
    panelStack_->setCurrentWidget(wanted);
}

void FunctionPages::clearDetails()
{
    detailGroup_->setExclusive(false);
    for (QAbstractButton *each : detailGroup_->buttons())
        each->setChecked(false);
    detailGroup_->setExclusive(true);
}

void FunctionPages::preselect(const DecodedBinding &decoded, const QString &macro)
{
    functionGroup_->setExclusive(false);
    for (QAbstractButton *each : functionGroup_->buttons())
        each->setChecked(false);
    functionGroup_->setExclusive(true);
    clearDetails();
    showPanel(decoded.panel);
    if (decoded.function)
        button(*decoded.function)->setChecked(true);
    if (decoded.detail)
        button(*decoded.detail)->setChecked(true);
    if (decoded.panel == Panel::Macros)
        for (ActionButton *each : qAsConst(macros_))
            if (each->text() == macro) {
                each->setChecked(true);
                macroArea_->ensureWidgetVisible(each, 0, 0);
            }
}

void FunctionPages::focusChosen()
{
    QAbstractButton *target = functionGroup_->checkedButton();
    if (!target)
        target = button(ActionRows.front());
    target->setFocus(Qt::TabFocusReason);
}

void FunctionPages::focusPanel()
{
    QAbstractButton *target = detailGroup_->checkedButton();
    const auto offered = panelStack_->currentWidget()->findChildren<ActionButton *>();
    if ((!target || !target->isVisible()) && !offered.isEmpty())
        target = offered.first();
    if (target)
        target->setFocus(Qt::TabFocusReason);
}

// ---- Macros -------------------------------------------------------------------------------------

QList<ActionButton *> FunctionPages::setMacros(const QStringList &names)
{
    if (names == macroNames_)
        return {}; // a rebuild would drop the keyboard focus
    macroNames_ = names;
    QString checked;
    // A read may arrive while a click handler of one of them runs a modal notice.
    for (ActionButton *each : qAsConst(macros_)) {
        checked = each->isChecked() ? each->text() : checked;
        detailGroup_->removeButton(each);
        each->hide();
        each->deleteLater();
    }
    macros_.clear();
    for (const QString &name : names)
        macros_ << addMacro(name, macros_.size());
    fillRows(names.size());
    macroGrid_->parentWidget()->adjustSize();
    if (macrosStyled_)
        stylePanel(page(Panel::Macros));
    for (ActionButton *each : qAsConst(macros_)) {
        each->setToolTip(each->isElided() ? each->text() : QString());
        each->setChecked(each->text() == checked);
    }
    return macros_;
}

// Disabled and empty ones behind a few macros.
void FunctionPages::fillRows(int count)
{
    qDeleteAll(fillers_);
    fillers_.clear();
    for (int place = count; count > 0 && place < LeastMacros; ++place) {
        auto *filler = new QToolButton(macroGrid_->parentWidget());
        filler->setFixedSize(FunctionSize.width(), FillerHeight);
        filler->setEnabled(false);
        filler->setAutoRaise(true);
        filler->setFocusPolicy(Qt::NoFocus);
        macroGrid_->addWidget(filler, place / MacroColumns, place % MacroColumns);
        filler->show();
        fillers_ << filler;
    }
}

ActionButton *FunctionPages::addMacro(const QString &name, int place)
{
    auto *made = new ActionButton(QString(), macroGrid_->parentWidget());
    made->setText(name);
    made->setEnabled(isMacroName(name)); // a mouse has no room for another
    made->setShortcut({});               // an "&" is part of the name
    made->setFont(back_->font());        // the font as scaled for the screen when the page was built
    made->setFixedSize(FunctionSize);
    detailGroup_->addButton(made);
    macroGrid_->addWidget(made, place / MacroColumns, place % MacroColumns);
    made->show();
    return made;
}
