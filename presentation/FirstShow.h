// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A style sheet decodes its pictures when it is set, and most pages are never opened in a run. So a page
// is dressed when it is first shown. Main thread.
#pragma once

#include <functional>

class QWidget;

// Runs `applyStyle` once, when the widget is first shown and before it is painted.
void onFirstShow(QWidget *widget, std::function<void()> applyStyle);
