// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Inquiry: a question that takes its time, such as one to devices, asked on a thread of its own. Its answer
// comes on the main thread, unless a newer question was asked, drop() was called or this object has ended
// meanwhile. Main thread.
#pragma once

#include <functional>
#include <memory>

class Inquiry
{
public:
    using Answer = std::function<void()>; // what the main thread does with it
    void ask(const std::function<Answer()> &question);
    void drop() { open_.reset(); }

private:
    std::shared_ptr<bool> open_; // lives as long as the answer is waited for
};
