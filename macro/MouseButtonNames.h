// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The names of the mouse buttons in the rows of macros. A file holds codes, but a row holds the name in the
// language in use. Main thread.
#pragma once

#include "keys/KeyVocabulary.h"
#include "macro/store/MacroRow.h"

// Of the whole process: the key vocabulary shares them with the other pages.
void setMouseButtonNames(int language);
// The rows with the names in use in the place of those of `before`.
macro::MacroRows withButtonNames(macro::MacroRows rows, const MouseButtonTexts &before);
