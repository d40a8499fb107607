// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SkinStyle: the toolkit style below the style sheets. Forms have fixed places, so a text of a language may
// be longer than its place: it is elided instead of cut. Centred lines are of about one length. Main thread.
#pragma once

#include <QProxyStyle>

class SkinStyle : public QProxyStyle
{
public:
    SkinStyle();

    void drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override;

    // The whole text of a widget that shows only a part of it, else empty.
    static QString elidedText(QWidget *widget);
};
