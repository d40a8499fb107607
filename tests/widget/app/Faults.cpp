// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/widget/app/Faults.h"

#include "presentation/SkinStyle.h"
#include "presentation/Widgets.h"
#include "tests/support/Contrast.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

namespace faults
{

namespace
{

using support::contrast;

constexpr double TextContrast = 4.5;
constexpr double ControlContrast = 3;

// Draws no text while asked to, and tells whether it was asked for one.
class TextSwitch : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;
    void drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override
    {
        asked = asked || !text.trimmed().isEmpty();
        if (!off)
            QProxyStyle::drawItemText(painter, place, flags, palette, enabled, text, role);
    }
    static bool off;
    static bool asked;
};
bool TextSwitch::off = false;
bool TextSwitch::asked = false;

// A tool button with an icon alone has a text that it doesn't show.
bool drawsText(QWidget *widget)
{
    TextSwitch::asked = false;
    QImage canvas(widget->size(), QImage::Format_ARGB32_Premultiplied);
    widget->render(&canvas, {}, {}, {});
    return TextSwitch::asked;
}

// Drawn by a document or an edit field, which the style doesn't get to see.
bool isDrawnAside(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->textInteractionFlags() & Qt::TextSelectableByMouse ||
               Qt::mightBeRichText(label->text());
    if (const auto *field = qobject_cast<const QLineEdit *>(widget))
        return !field->text().isEmpty();
    if (const auto *field = qobject_cast<const QPlainTextEdit *>(widget))
        return !field->toPlainText().isEmpty();
    const auto *field = qobject_cast<const QTextEdit *>(widget);
    return field && !field->toPlainText().isEmpty();
}

QImage shotOf(QWidget *window, const QRect &part)
{
    return window->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
}
QImage shotOf(QWidget *window) { return shotOf(window, window->rect()); }

QRect placeIn(const QWidget *window, const QWidget *widget)
{
    return {widget->mapTo(window, QPoint()), widget->size()};
}

// What of a widget is seen, in its window.
QRect seenOf(const QWidget *window, const QWidget *widget)
{
    return widget->visibleRegion().boundingRect().translated(widget->mapTo(window, QPoint()));
}

bool textFits(const QString &text, const QWidget *widget, bool wraps, int room)
{
    if (text.isEmpty())
        return true;
    const QFontMetrics metrics(widget->font());
    const int flags = wraps ? int(Qt::TextWordWrap) : 0;
    const QRect needed = metrics.boundingRect(QRect(0, 0, widget->width() - room, 4000), flags, text);
    return needed.width() <= widget->width() - room && needed.height() <= widget->height();
}

// What a list has scrolled away is neither seen nor in the way.
bool isScrolledAway(const QWidget *widget) { return widget->visibleRegion().isEmpty(); }

bool isInList(const QWidget *widget)
{
    for (const QWidget *each = widget->parentWidget(); each; each = each->parentWidget())
        if (qobject_cast<const QScrollArea *>(each))
            return true;
    return false;
}

// At an edge of a list, until it is scrolled on.
bool isUnderFade(const QWidget *widget)
{
    for (const QWidget *each = widget->parentWidget(); each; each = each->parentWidget())
        if (const auto *area = qobject_cast<const QScrollArea *>(each))
            for (const char *name : {"FadeTop", "FadeBottom"})
                if (const auto *fade = area->findChild<QLabel *>(name, Qt::FindDirectChildrenOnly))
                    if (fade->isVisible() && fade->geometry().intersects(placeIn(area, widget)))
                        return true;
    return false;
}

// What is off, out of date or under a fade is dimmed on purpose.
bool isLive(const QWidget *widget)
{
    if (!widget->isEnabled() || isUnderFade(widget))
        return false;
    for (const QWidget *each = widget; each; each = each->parentWidget())
        if (each->graphicsEffect())
            return false;
    return true;
}

QString textOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    const auto *box = qobject_cast<const QComboBox *>(widget);
    return box ? box->currentText() : QString();
}

QVector<QWidget *> seenIn(const QWidget *window)
{
    QVector<QWidget *> found;
    for (QWidget *widget : window->findChildren<QWidget *>())
        if (widget->isVisible() && widget->window() == window && !isScrolledAway(widget))
            found << widget;
    return found;
}

using Colors = QHash<QRgb, int>;

Colors colorsOf(const QImage &shot, const QRect &part)
{
    Colors counts;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            ++counts[shot.pixel(x, y)];
    return counts;
}

QRgb mostOf(const Colors &counts)
{
    QRgb most = 0;
    for (auto each = counts.cbegin(); each != counts.cend(); ++each)
        if (each.value() > counts.value(most))
            most = each.key();
    return most;
}

// What lies under the most of a part.
QRgb groundOf(const QImage &shot, const QRect &part) { return mostOf(colorsOf(shot, part)); }

// What lies around it.
QRgb groundAround(const QImage &shot, const QRect &part)
{
    Colors counts = colorsOf(shot, part.adjusted(-3, -3, 3, 3).intersected(shot.rect()));
    const Colors inside = colorsOf(shot, part);
    for (auto each = inside.cbegin(); each != inside.cend(); ++each)
        counts[each.key()] -= each.value();
    return mostOf(counts);
}

double bestContrast(const QImage &shot, const QRect &part, const QColor &against)
{
    const Colors colors = colorsOf(shot, part);
    double best = 1;
    for (auto each = colors.cbegin(); each != colors.cend(); ++each)
        best = qMax(best, contrast(each.key(), against));
    return best;
}

// Of the strokes, which are where a picture without the texts differs.
double inkContrast(const QImage &shot, const QImage &bare, const QRect &part)
{
    double best = 1;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (shot.pixel(x, y) != bare.pixel(x, y))
                best = qMax(best, contrast(shot.pixel(x, y), bare.pixel(x, y)));
    return best;
}

QString line(const char *what, const QWidget *widget, double seen)
{
    return QString("%1 %2: %3").arg(what, QString::number(seen, 'f', 2), place(widget));
}

bool isTypedInto(const QWidget *widget)
{
    if (const auto *box = qobject_cast<const QAbstractSpinBox *>(widget))
        return !box->isReadOnly() && box->focusPolicy() != Qt::NoFocus;
    const auto *field = qobject_cast<const QLineEdit *>(widget);
    return field && !qobject_cast<QAbstractSpinBox *>(field->parentWidget()) &&
           !qobject_cast<QComboBox *>(field->parentWidget()) && field->hasFrame();
}

// The faintest of the four sides: the best of the first pixels inside against one outside.
double outlineContrast(const QImage &shot, const QRect &control)
{
    double worst = 21;
    const QPoint middle = control.center();
    const QPoint inward[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    const QPoint edges[] = {{control.left(), middle.y()},
                            {control.right(), middle.y()},
                            {middle.x(), control.top()},
                            {middle.x(), control.bottom()}};
    for (int side = 0; side < 4; ++side) {
        const QPoint outside = edges[side] - 2 * inward[side];
        if (!shot.rect().contains(outside))
            continue;
        double best = 1;
        for (int depth = 0; depth < 3; ++depth)
            best = qMax(best, contrast(shot.pixel(edges[side] + depth * inward[side]), shot.pixel(outside)));
        worst = qMin(worst, best);
    }
    return worst;
}

QRect indicatorOf(const QWidget *widget)
{
    QStyleOptionButton option;
    option.initFrom(widget);
    return widget->style()->subElementRect(qobject_cast<const QRadioButton *>(widget)
                                               ? QStyle::SE_RadioButtonIndicator
                                               : QStyle::SE_CheckBoxIndicator,
                                           &option, widget);
}

// The part of a control that must be told from its ground.
QRect markOf(const QWidget *widget)
{
    if (qobject_cast<const QCheckBox *>(widget) || qobject_cast<const QRadioButton *>(widget))
        return indicatorOf(widget);
    if (qobject_cast<const QSlider *>(widget)) {
        QRect groove = widget->rect();
        const int middle = groove.center().y();
        return {groove.left() + 2, middle - 1, groove.width() - 4, 3};
    }
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button && button->text().isEmpty() ? widget->rect() : QRect();
}

QString tipOver(QWidget *widget)
{
    const QPoint middle = widget->rect().center();
    QHelpEvent help(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QCoreApplication::sendEvent(widget, &help);
    const auto *bubble = widget->window()->findChild<QLabel *>("ToolTip");
    if (!bubble || !bubble->isVisible())
        return {};
    if (!widget->window()->rect().contains(bubble->geometry()))
        return QStringLiteral("outside");
    const QString text = bubble->text();
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &leave);
    return text;
}

// A dialog's road begins anew behind the cross in its corner, with what is to be read first.
void addLateCross(const QWidget *window, const QVector<QWidget *> &reached, QStringList &found)
{
    const auto isCross = [](const QWidget *each) { return each->objectName() == "CloseButton"; };
    const auto cross = std::find_if(reached.begin(), reached.end(), isCross);
    if (cross == reached.end() || window->findChild<QWidget *>("MinButton"))
        return;
    const QWidget *next = cross + 1 == reached.end() ? reached.first() : *(cross + 1);
    for (const QWidget *each : reached) {
        const QRect place = placeIn(window, each);
        const QRect first = placeIn(window, next);
        if (!isCross(each) &&
            (place.bottom() < first.top() || (place.top() <= first.bottom() && place.right() < first.left())))
            found << QString("%1 comes late").arg(faults::place(each));
    }
}

void addStrayTip(QWidget *widget, QStringList &found)
{
    if (!widget->toolTip().isEmpty() && tipOver(widget) == "outside")
        found << "tip outside: " + place(widget);
}

void addStacked(const QWidget *window, const QVector<QWidget *> &controls, QStringList &found)
{
    for (int i = 0; i < controls.size(); ++i)
        for (int j = 0; j < i; ++j)
            if (placeIn(window, controls[i]).intersects(placeIn(window, controls[j])))
                found << "overlap: " + place(controls[i]) + ", " + place(controls[j]);
}

// A step against the direction of reading. Marks on a picture go by their numbers.
void addJump(const QWidget *window, const QVector<QWidget *> &reached, const QWidget *next,
             QStringList &jumps)
{
    if (reached.isEmpty() || next->objectName().startsWith("Number"))
        return;
    const QRect from = placeIn(window, reached.last());
    const QRect to = placeIn(window, next);
    const bool up = to.bottom() < from.top() && to.left() < from.right();
    const bool left = to.right() < from.left() && to.top() <= from.bottom();
    if (up || left)
        jumps << QString("back from %1 to %2").arg(place(reached.last()), place(next));
}

} // namespace

void watchTexts() { QApplication::setStyle(new TextSwitch(QApplication::style())); }

QString place(const QWidget *widget)
{
    return QString("%1 in %2").arg(widget->objectName(), widget->window()->metaObject()->className());
}

bool isControl(const QWidget *widget)
{
    if (qobject_cast<const QAbstractSpinBox *>(widget->parentWidget()))
        return false; // the field of a box is no control of its own
    return (qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget) ||
            qobject_cast<const QAbstractSlider *>(widget) || qobject_cast<const QPlainTextEdit *>(widget) ||
            qobject_cast<const QAbstractSpinBox *>(widget) || qobject_cast<const QLineEdit *>(widget)) &&
           widget->focusPolicy() != Qt::NoFocus;
}

QStringList in(QWidget *window)
{
    QStringList found;
    QVector<QWidget *> controls;
    for (QWidget *widget : seenIn(window)) {
        const auto *label = qobject_cast<QLabel *>(widget);
        const int room = qobject_cast<QAbstractButton *>(widget) ? 8
                         : qobject_cast<QComboBox *>(widget)     ? 36
                                                                 : 0;
        if (!textFits(textOf(widget), widget, label && label->wordWrap(), room) ||
            !SkinStyle::elidedText(widget).isEmpty())
            found << "cut: " + place(widget);
        if (qobject_cast<QPlainTextEdit *>(widget) || qobject_cast<QTextEdit *>(widget))
            if (static_cast<QAbstractScrollArea *>(widget)->verticalScrollBar()->maximum() > 0)
                found << "cut: " + place(widget);
        if (!isInList(widget) && !window->rect().contains(placeIn(window, widget)))
            found << "outside: " + place(widget);
        addStrayTip(widget, found);
        if (!isControl(widget))
            continue;
        controls << widget;
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        if (widget->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
            found << "no name: " + place(widget);
    }
    addStacked(window, controls, found);
    return found + faintTexts(window) + faintControls(window);
}

QStringList inLongTexts(QWidget *window)
{
    QStringList found;
    QVector<QWidget *> controls;
    for (QWidget *widget : seenIn(window)) {
        const auto *label = qobject_cast<QLabel *>(widget);
        const QString whole = textFits(textOf(widget), widget, label && label->wordWrap(), 0)
                                  ? SkinStyle::elidedText(widget)
                                  : textOf(widget);
        if (!whole.isEmpty() && !tipOver(widget).remove(QRegularExpression("</?p>")).contains(whole))
            found << "cut without a tip: " + place(widget);
        if (qobject_cast<QPlainTextEdit *>(widget) || qobject_cast<QTextEdit *>(widget))
            if (static_cast<QAbstractScrollArea *>(widget)->verticalScrollBar()->maximum() > 0)
                found << "cut: " + place(widget);
        if (!isInList(widget) && !window->rect().contains(placeIn(window, widget)))
            found << "outside: " + place(widget);
        addStrayTip(widget, found);
        if (isControl(widget))
            controls << widget;
    }
    addStacked(window, controls, found);
    return found;
}

QStringList faintTexts(QWidget *window)
{
    const QImage shot = shotOf(window);
    TextSwitch::off = true;
    const QImage bare = shotOf(window);
    TextSwitch::off = false;
    QStringList found;
    for (QWidget *widget : seenIn(window)) {
        if (!isLive(widget))
            continue;
        const QRect seen = seenOf(window, widget).intersected(shot.rect());
        double best = 21;
        if (isDrawnAside(widget) && seen == placeIn(window, widget))
            best = bestContrast(shot, seen.adjusted(4, 4, -4, -4), groundOf(shot, seen));
        else if (!textOf(widget).isEmpty() && drawsText(widget))
            best = inkContrast(shot, bare, seen);
        if (best < TextContrast)
            found << line("faint text", widget, best);
        if (const auto *view = qobject_cast<QAbstractItemView *>(widget))
            for (int row = 0; view->model() && row < view->model()->rowCount(); ++row) {
                const QRect rowPlace = view->visualRect(view->model()->index(row, 0))
                                           .translated(view->viewport()->mapTo(window, QPoint()))
                                           .intersected(seen);
                if (!rowPlace.isEmpty() &&
                    bestContrast(shot, rowPlace, groundOf(shot, rowPlace)) < TextContrast)
                    found << line("faint row", widget, row);
            }
    }
    return found;
}

QStringList faintControls(QWidget *window)
{
    const QImage shot = shotOf(window);
    QStringList found;
    for (QWidget *widget : seenIn(window)) {
        if (!isLive(widget))
            continue;
        const QRect all = placeIn(window, widget);
        if (qobject_cast<QComboBox *>(widget) || isTypedInto(widget)) {
            if (seenOf(window, widget) != all)
                continue;
            const double seen = outlineContrast(shot, all);
            if (seen < ControlContrast)
                found << line("faint outline", widget, seen);
        }
        const QRect mark = markOf(widget).translated(all.topLeft()).intersected(seenOf(window, widget));
        if (mark.isEmpty() || !isControl(widget))
            continue;
        const double seen = bestContrast(shot, mark, groundAround(shot, mark));
        if (seen < ControlContrast)
            found << line("faint mark", widget, seen);
    }
    return found;
}

QStringList ofTheKeyboard(QWidget *window)
{
    QStringList found, jumps;
    QVector<QWidget *> reached;
    QApplication::setActiveWindow(window);
    window->setFocus(Qt::TabFocusReason);
    for (;;) {
        QWidget *from = QApplication::focusWidget() ? QApplication::focusWidget() : window;
        QTest::keyClick(from, Qt::Key_Tab);
        QWidget *focus = QApplication::focusWidget();
        if (!focus || focus == window || reached.contains(focus) || reached.size() > 300)
            break;
        addJump(window, reached, focus, jumps); // while the page is scrolled to it
        reached << focus;
        const auto *ring = window->findChild<QWidget *>("FocusOutline");
        if (!ring || !ring->isVisible()) {
            found << "no ring: " + place(focus);
            continue;
        }
        const QRect outline = placeIn(window, ring);
        if (!window->rect().contains(outline) || ring->visibleRegion().boundingRect() != ring->rect())
            found << "cut ring: " + place(focus);
        const QRect part = outline.adjusted(-4, -4, 4, 4).intersected(window->rect());
        const double seen = outlineContrast(shotOf(window, part), outline.translated(-part.topLeft()));
        if (seen < ControlContrast)
            found << line("faint ring", focus, seen);
    }
    for (QWidget *widget : seenIn(window))
        if (isControl(widget) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) &&
            !reached.contains(widget) && !qobject_cast<QScrollBar *>(widget))
            found << "not reached: " + place(widget);
    addJump(window, reached, reached.value(0), jumps);
    addLateCross(window, reached, found);
    if (jumps.size() > 1) // the road ends once, at its last control
        found << jumps;
    return found;
}

} // namespace faults
