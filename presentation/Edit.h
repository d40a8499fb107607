// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rule of an edit, for every control that writes a setting: while the pages take no input, or the page
// fills its widgets from a record, a change is no edit and nothing is written; a change that the mouse did
// not take is taken back, with the control's signals blocked so that it is no edit again. Main thread.
#pragma once

#include <atomic>
#include <functional>

class QObject;

enum class EditResult { Ignored, Written, Refused };

// busy: the flag of the page. write: true when the mouse took the value. restore: shows the last value that
// the mouse took; it runs only after a refusal.
EditResult edit(const std::atomic<bool> &busy, QObject *control, const std::function<bool()> &write,
                const std::function<void()> &restore);
// For the controls that write also while their page is being filled.
EditResult edit(QObject *control, const std::function<bool()> &write, const std::function<void()> &restore);
