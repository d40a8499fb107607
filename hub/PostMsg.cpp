// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "hub/PostMsg.h"

namespace
{
PostMsg *hub = nullptr;
}

PostMsg *PostMsg::instance()
{
    if (!hub)
        hub = new PostMsg;
    return hub;
}

void PostMsg::clear() { hub = nullptr; }
