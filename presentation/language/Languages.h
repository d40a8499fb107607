// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Which languages there are. Each file of "/Language/" beside the program that names itself by the text
// LanguageName of its section "common" is one: the files of the notice "already running" have the indices of
// that notice, other
// "*.json" files follow in the order of their names.
#pragma once

#include <QStringList>

namespace language
{

// The name by language index, in the language itself; empty for an index that has no file.
QStringList names();

} // namespace language
