// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Faults.h"

#include "emulator/Protocol.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

namespace
{

struct KindRow {
    const char *name;
    FaultKind kind;
    bool takesMs = false;
};

constexpr KindRow Kinds[] = {
    {"noreply", FaultKind::NoReply},   {"late", FaultKind::Late, true},     {"doubled", FaultKind::Doubled},
    {"short", FaultKind::Short},       {"oversized", FaultKind::Oversized}, {"wrongseq", FaultKind::WrongSeq},
    {"flipbit", FaultKind::FlipBit},   {"refuse", FaultKind::Refuse},       {"busy", FaultKind::Busy},
    {"unstored", FaultKind::Unstored}, {"stall", FaultKind::Stall, true},   {"unplug", FaultKind::Unplug},
    {"powercut", FaultKind::PowerCut}, {"radio", FaultKind::Radio},
};

constexpr uint32_t TimeLimitMs = 60000;
constexpr uint32_t CountLimit = 1000000;

// Parses the words of a rule in order.
class RuleReader
{
public:
    RuleReader(const Words &words, std::size_t first, std::string &error)
        : words_(words), next_(first), error_(error)
    {
    }

    bool read(FaultRule &rule) { return readKind(rule) && readWhere(rule) && readCommand(rule); }

private:
    bool fail(const std::string &text)
    {
        error_ = text;
        return false;
    }
    std::string take() { return next_ < words_.size() ? words_[next_++] : std::string(); }
    bool takeNumber(uint32_t &value, uint32_t least, uint32_t most, const std::string &name)
    {
        const auto number = parseNumber(take(), least, most);
        if (!number)
            return fail(name);
        value = *number;
        return true;
    }
    bool readKind(FaultRule &rule)
    {
        const std::string name = take();
        for (const KindRow &row : Kinds) {
            if (name != row.name)
                continue;
            rule.kind = row.kind;
            return !row.takesMs || takeNumber(rule.ms, 1, TimeLimitMs, name + " needs 1..60000 milliseconds");
        }
        return fail("no such fault");
    }
    bool readWhere(FaultRule &rule)
    {
        const std::string where = take();
        uint32_t seed = 1;
        if (where == "at") {
            rule.where = FaultWhere::At;
            if (!takeNumber(rule.countdown, 1, CountLimit, "at needs a report number 1..1000000"))
                return false;
            const bool seeded = next_ < words_.size() && words_[next_] != "command";
            if (seeded && !takeNumber(seed, 0, UINT32_MAX, "only a seed or \"command NAME\" can follow"))
                return false;
        } else if (where == "random") {
            rule.where = FaultWhere::Random;
            if (!takeNumber(seed, 0, UINT32_MAX, "random needs a seed") ||
                !takeNumber(rule.percent, 1, 100, "random needs 1..100 percent"))
                return false;
        } else if (where != "always") {
            return fail("where: at N, random SEED PERCENT or always");
        }
        rule.random.seed(seed);
        return true;
    }
    bool readCommand(FaultRule &rule)
    {
        if (next_ == words_.size())
            return true;
        if (take() != "command")
            return fail("only \"command NAME\" can follow");
        const std::string name = take();
        const CommandRow *row = findCommand(name);
        if (const auto code = parseNumber(name, 0, 0xFF); row == nullptr && code)
            row = findCommand(static_cast<uint8_t>(*code));
        if (row == nullptr)
            return fail("no such command");
        rule.command = static_cast<uint8_t>(row->command);
        return next_ == words_.size() || fail("too many words");
    }

    const Words &words_;
    std::size_t next_;
    std::string &error_;
};

bool fires(FaultRule &rule)
{
    switch (rule.where) {
    case FaultWhere::At:
        return --rule.countdown == 0;
    case FaultWhere::Random:
        return rule.random() % 100 < rule.percent;
    case FaultWhere::Always:
        break;
    }
    return true;
}

} // namespace

std::optional<FaultHit> FaultTable::match(uint8_t command)
{
    std::optional<FaultHit> hit;
    for (std::size_t i = 0; i < rules_.size();) {
        FaultRule &rule = rules_[i];
        const bool fired = rule.command.value_or(command) == command && fires(rule);
        if (fired && !hit)
            hit = FaultHit{rule.kind, rule.ms, static_cast<uint32_t>(rule.random())};
        if (fired && rule.where == FaultWhere::At)
            rules_.erase(rules_.begin() + static_cast<std::ptrdiff_t>(i));
        else
            ++i;
    }
    return hit;
}

std::vector<std::string> faultKindNames()
{
    std::vector<std::string> names;
    for (const KindRow &row : Kinds)
        names.emplace_back(row.name);
    return names;
}

bool takesMilliseconds(const std::string &kindName)
{
    return std::any_of(std::begin(Kinds), std::end(Kinds),
                       [&kindName](const KindRow &row) { return row.takesMs && kindName == row.name; });
}

std::optional<FaultRule> parseFault(const Words &words, std::size_t first, std::string &error)
{
    FaultRule rule;
    if (!RuleReader(words, first, error).read(rule))
        return std::nullopt;
    return rule;
}

} // namespace emulator
