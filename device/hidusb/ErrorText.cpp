// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/ErrorText.h"

#include <cstring>

namespace hidusb
{

std::string errorText(int error)
{
    const char *name = ::strerrorname_np(error);
    const char *meaning = ::strerrordesc_np(error);
    if (name == nullptr || meaning == nullptr)
        return "error " + std::to_string(error);
    return std::string(name) + " (" + meaning + ")";
}

} // namespace hidusb
