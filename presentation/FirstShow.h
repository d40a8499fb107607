// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Setting a style sheet decodes its pictures, and most pages are never opened in a run. So a page gets its
// style sheets when it is first shown. Main thread.
#pragma once

#include <functional>

class QString;
class QWidget;

// Runs `applyStyle` once, when the widget is first shown and before it is painted.
void onFirstShow(QWidget *widget, std::function<void()> applyStyle);
// Runs it once, before the widget paints itself for the first time: what is shown and hidden again in between
// costs nothing. The widget is then painted once more.
void onFirstPaint(QWidget *widget, std::function<void()> applyStyle);
// Gives the widget the sheet, at once when it is visible, else when it is next shown.
void setStyleSheetWhenShown(QWidget *widget, const QString &sheet);
