// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A process-wide atomic value that returns to its start value with all others of its type. Each adds itself
// to the list when it is constructed, before main(), so it must have static storage; any thread may read and
// write it afterwards.
#pragma once

#include <atomic>

class ResettableFlag
{
public:
    virtual void reset() = 0;

    // The list of all flags: first(), then next() until null.
    static ResettableFlag *first() { return first_; }
    ResettableFlag *next() const { return next_; }

protected:
    ResettableFlag() : next_(first_) { first_ = this; }
    ~ResettableFlag() = default;

private:
    static inline ResettableFlag *first_ = nullptr;
    ResettableFlag *const next_;
};

template <typename Value> class DeviceFlag final : public std::atomic<Value>, public ResettableFlag
{
public:
    explicit DeviceFlag(Value start) : std::atomic<Value>(start), start_(start) {}
    using std::atomic<Value>::operator=;
    void reset() override { *this = start_; }

private:
    const Value start_;
};
