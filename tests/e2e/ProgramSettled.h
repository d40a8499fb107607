// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ProgramSettled: tells when the program has finished all work caused by the mouse's reports so far. A mouse
// that reports its battery once more is asked for it; orders and answers keep their order, so that the writes
// of the program stand in front of that question. Main thread.
#pragma once

#include "hub/PostMsg.h"
#include "tests/support/EmulatedBus.h"

class ProgramSettled
{
public:
    ProgramSettled(EmulatedBus &bus, const std::string &mouse)
    {
        QObject::connect(PostMsg::instance(), &PostMsg::SigBattery, &context, [this] { settled = true; });
        bus.order("battery " + mouse + " " + std::to_string(bus.emulated.mouse(mouse)->battery));
    }
    operator bool() const { return settled; }

private:
    bool settled = false;
    QObject context;
};
