// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/SkinStyle.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleFactory>
#include <QTextLayout>
#include <QWidget>

namespace
{

// Where a drawn text that is elided is noted, while somebody asks.
QString *noted = nullptr;

constexpr QChar Ellipsis(0x2026);

// A wrapped text with as many of its lines as the place is high, the last one elided.
QString fittingLines(const QString &text, const QFontMetrics &metrics, const QSize &place)
{
    const int most = qMax(1, (place.height() + metrics.leading()) / metrics.lineSpacing());
    QTextLayout layout(QString(text).replace(QLatin1Char('\n'), QChar::LineSeparator));
    layout.beginLayout();
    int start = 0;
    for (int count = 0;; ++count) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(place.width());
        if (count < most)
            start = line.textStart();
    }
    layout.endLayout();
    QString last = text.mid(start);
    const int end = last.indexOf(QLatin1Char('\n'));
    if (end >= 0)
        last = last.left(end) + Ellipsis;
    return text.left(start) + metrics.elidedText(last, Qt::ElideRight, place.width());
}

QString fitting(const QString &text, const QFontMetrics &metrics, const QSize &place, int flags)
{
    if (flags & (Qt::TextWordWrap | Qt::TextWrapAnywhere)) {
        const QRect needed = metrics.boundingRect(QRect(0, 0, place.width(), 0), flags, text);
        return needed.height() <= place.height() ? text : fittingLines(text, metrics, place);
    }
    if (metrics.size(flags, text).width() <= place.width())
        return text;
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines)
        line = metrics.elidedText(line, Qt::ElideRight, place.width(), flags & Qt::TextShowMnemonic);
    return lines.join(QLatin1Char('\n'));
}

// Of a centred text of several lines: the narrowest part of its place that takes no more of them, so that no
// last word stands alone.
QRect balanced(const QString &text, const QFontMetrics &metrics, const QRect &place, int flags)
{
    if (!(flags & Qt::TextWordWrap) || !(flags & Qt::AlignHCenter))
        return place;
    const auto needed = [&](int width) { return metrics.boundingRect(QRect(0, 0, width, 0), flags, text); };
    const int height = needed(place.width()).height();
    const auto fits = [&](int width) {
        const QRect lines = needed(width);
        return lines.width() <= width && lines.height() <= height;
    };
    int tooNarrow = place.width() / 2;
    int wide = place.width();
    while (height > metrics.height() && wide - tooNarrow > 1) {
        const int middle = (tooNarrow + wide) / 2;
        (fits(middle) ? wide : tooNarrow) = middle;
    }
    return QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(wide, place.height()), place);
}

// The same text with lines of its own for each sentence.
QString inSentences(QString text)
{
    const QString ends = QStringLiteral(".?!");
    for (int i = 1; i < text.size(); ++i)
        if (text[i] == QLatin1Char(' ') && ends.contains(text[i - 1]))
            text[i] = QLatin1Char('\n');
    return text;
}

// A centred text of several lines breaks behind its sentences, unless it then takes more lines.
QString brokenBySense(const QString &text, const QFontMetrics &metrics, const QSize &place, int flags)
{
    if (!(flags & Qt::TextWordWrap) || !(flags & Qt::AlignHCenter))
        return text;
    const auto height = [&](const QString &lines) {
        return metrics.boundingRect(QRect(0, 0, place.width(), 0), flags, lines).height();
    };
    const QString broken = inSentences(text);
    return height(broken) <= height(text) ? broken : text;
}

// Pages and frames hold what shows texts, and show none themselves.
bool mayShowText(const QWidget *widget)
{
    return qobject_cast<const QLabel *>(widget) || qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QComboBox *>(widget) ||
           !widget->findChild<const QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

SkinStyle::SkinStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void SkinStyle::drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette,
                             bool enabled, const QString &text, QPalette::ColorRole role) const
{
    const QString shown = fitting(text, painter->fontMetrics(), place.size(), flags);
    if (noted && shown != text)
        *noted = text;
    const QString broken = brokenBySense(shown, painter->fontMetrics(), place.size(), flags);
    const QRect lines = balanced(broken, painter->fontMetrics(), place, flags);
    QProxyStyle::drawItemText(painter, lines, flags, palette, enabled, broken, role);
}

// What is drawn depends on the widget's kind and sheet, so the widget is drawn to see it. A tip asks all that
// lie under the pointer, up to the window; to draw a whole page would hold up the pointer.
QString SkinStyle::elidedText(QWidget *widget)
{
    if (!mayShowText(widget))
        return {};
    // A text that can be selected is drawn by a document, which cuts it.
    const auto *label = qobject_cast<QLabel *>(widget);
    if (label && (label->textInteractionFlags() & Qt::TextSelectableByMouse))
        return label->heightForWidth(label->width()) > label->height() ? label->text() : QString();
    QString found;
    const QScopedValueRollback<QString *> asked(noted, &found);
    QImage canvas(widget->size(), QImage::Format_ARGB32_Premultiplied);
    if (!canvas.isNull())
        widget->render(&canvas, {}, {}, {});
    return found;
}
