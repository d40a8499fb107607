// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A table of faults: each row has a kind, the report of the host at which it fires, and a command.
#pragma once

#include "emulator/Words.h"

#include <random>

namespace emulator
{

enum class FaultKind : uint8_t {
    NoReply,   // carried out, the answer is lost
    Late,      // carried out, the answer comes after ms
    Doubled,   // the answer comes twice
    Short,     // the answer is cut off
    Oversized, // the answer has bytes behind its end
    WrongSeq,  // the answer has another sequence number
    FlipBit,   // one bit of the answer is flipped
    Refuse,    // not carried out, the answer is a refusal
    Busy,      // not carried out, the answer asks to try again
    Unstored,  // not carried out, the answer says that it was
    Stall,     // carried out; for ms the device neither answers nor takes further requests
    Unplug,    // not carried out, the device leaves the bus
    PowerCut,  // not carried out, the device loses its power for a moment
    Radio,     // the mouse loses its radio link before the request is handled
};

enum class FaultWhere : uint8_t { At, Random, Always };

struct FaultRule {
    FaultKind kind = FaultKind::NoReply;
    uint32_t ms = 0; // of Late and Stall
    FaultWhere where = FaultWhere::Always;
    uint32_t countdown = 0; // At: fires when it reaches 0, then the row is gone
    uint32_t percent = 0;   // Random: 1..100
    std::mt19937 random;    // also chooses the bit of FlipBit
    std::optional<uint8_t> command;
};

struct FaultHit {
    FaultKind kind;
    uint32_t ms;
    uint32_t chance; // any number; selects the bit of FlipBit
};

class FaultTable
{
public:
    void add(const FaultRule &rule) { rules_.push_back(rule); }
    void clear() { rules_.clear(); }
    bool empty() const { return rules_.empty(); }
    std::size_t size() const { return rules_.size(); }
    // Counts one report of the host in every row. Returns the first row that fires.
    std::optional<FaultHit> match(uint8_t command);

private:
    std::vector<FaultRule> rules_;
};

// The names of all kinds in orders.
std::vector<std::string> faultKindNames();
// True for the kinds whose name is followed by a time.
bool takesMilliseconds(const std::string &kindName);
// "KIND [MS] at N [SEED]|random SEED PERCENT|always [command NAME|CODE]" from word `first` on; `error` is set
// when there is no rule in it.
std::optional<FaultRule> parseFault(const Words &words, std::size_t first, std::string &error);

} // namespace emulator
