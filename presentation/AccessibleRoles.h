// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a screen reader calls a widget where the toolkit guesses wrong: a checkable tool button of an
// exclusive group is a choice and no check box. The dynamic property "accessibleRole" tells what follows from
// nothing else: "choice" of a tool button, "grouping" of a page (in its form, since a screen reader may ask
// before its constructor has ended), "list" of what shows its items itself.
#pragma once

// Once, after the application object is made. Main thread.
void installAccessibleRoles();
