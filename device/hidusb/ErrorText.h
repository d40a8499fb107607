// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// An errno as a log shows it: "EACCES (Permission denied)", in English whatever the user's language.
#pragma once

#include <string>

namespace hidusb
{

std::string errorText(int error);

} // namespace hidusb
