// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/Inquiry.h"

#include "environment/MainThread.h"
#include "environment/Thread.h"

void Inquiry::ask(const std::function<Answer()> &question)
{
    open_ = std::make_shared<bool>(true);
    const auto body = [this, question, open = std::weak_ptr<bool>(open_)] {
        const Answer answer = question();
        runOnMainThread([this, answer, open] {
            if (open.expired())
                return;
            drop();
            answer();
        });
    };
    if (!startThread(body))
        body();
}
