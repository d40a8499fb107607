// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/FirmwareTargets.h"

#include "device/hidusb/Finder.h"
#include "device/hidusb/Question.h"
#include "device/hidusb/Thread.h"
#include "device/hidusb/wire/BusName.h"

#include <algorithm>

namespace hidusb
{

using wire::Command;

constexpr int IdentityTries = 2;

namespace
{

enum class Fit : uint8_t {
    None,
    Perhaps, // a receiver that does not know its model
    Device,
    BootLoader,
    Unknown, // not decided when the search ends: it may be any of these
};

// The answers, which may still come when nobody waits for them any more.
struct Survey {
    Survey(const Firmware &wanted, const SearchTimes &limits, std::size_t count)
        : firmware(wanted), times(limits), unanswered(count), fits(count, Fit::Unknown)
    {
    }

    const Firmware firmware;
    const SearchTimes times;
    const Clock::time_point latest = Clock::now() + times.whole;
    std::mutex mutex;
    std::condition_variable changed;
    Clock::time_point end = std::min(latest, Clock::now() + times.silent);
    std::size_t unanswered;
    std::vector<Fit> fits;
};

Fit fitOf(const Firmware &firmware, const InterfaceInfo &info)
{
    if (info.usagePage == wire::BootUsagePage) {
        wire::BootIdentityReply identity{};
        const bool fits = fetch(info.path.c_str(), Command::BootIdentity, &identity, IdentityTries) &&
                          firmware.fitsBootLoader(identity);
        return fits ? Fit::BootLoader : Fit::None;
    }
    DeviceIdentity identity{};
    if (!fetch(info.path.c_str(), Command::Identity, &identity, IdentityTries) ||
        !firmware.mayFitDevice(identity))
        return Fit::None;
    return firmware.fitsDevice(identity) ? Fit::Device : Fit::Perhaps;
}

// Nodes are opened one at a time, so each opening gives those behind it the time of a silent one again.
Fit openAndAsk(Survey &survey, const InterfaceInfo &info)
{
    const std::shared_ptr<Channel> opened = acquireChannel(info.path); // held, since its questions use it
    {
        const std::lock_guard lock(survey.mutex);
        survey.end = std::min(survey.latest, Clock::now() + survey.times.silent);
    }
    return opened ? fitOf(survey.firmware, info) : Fit::None;
}

void ask(const std::shared_ptr<Survey> &survey, std::size_t index, const InterfaceInfo &info)
{
    Fit fit = Fit::Unknown;
    try {
        fit = openAndAsk(*survey, info);
    } catch (const std::exception &) {
        fit = Fit::Unknown;
    }
    const std::lock_guard lock(survey->mutex);
    survey->fits[index] = fit;
    --survey->unanswered;
    survey->changed.notify_all();
}

std::vector<Fit> askAll(const Firmware &firmware, const SearchTimes &times,
                        const std::vector<InterfaceInfo> &infos)
{
    const auto survey = std::make_shared<Survey>(firmware, times, infos.size());
    for (std::size_t i = 0; i < infos.size(); ++i) {
        if (!startThread([survey, i, info = infos[i]] { ask(survey, i, info); }))
            ask(survey, i, infos[i]);
    }
    std::unique_lock lock(survey->mutex);
    while (survey->unanswered > 0 && Clock::now() < survey->end)
        survey->changed.wait_until(lock, Clock::time_point(survey->end));
    return survey->fits;
}

std::vector<InterfaceInfo> interfacesWith(std::initializer_list<uint16_t> usagePages)
{
    std::vector<InterfaceInfo> infos = findOfKnownVendors();
    const auto other = [&usagePages](const InterfaceInfo &info) {
        return std::find(usagePages.begin(), usagePages.end(), info.usagePage) == usagePages.end();
    };
    infos.erase(std::remove_if(infos.begin(), infos.end(), other), infos.end());
    return infos;
}

} // namespace

int countBootLoaders(const Firmware &firmware, const SearchTimes &times)
{
    const std::vector<Fit> fits = askAll(firmware, times, interfacesWith({wire::BootUsagePage}));
    return static_cast<int>(std::count(fits.begin(), fits.end(), Fit::BootLoader));
}

// A device in its boot loader has precedence: without this file it may not work.
std::optional<FirmwareTarget> findTarget(const Firmware &firmware, const SearchTimes &times)
{
    const auto infos = interfacesWith({wire::BootUsagePage, wire::SettingsUsagePage});
    const std::vector<Fit> fits = askAll(firmware, times, infos);
    const auto best = std::max_element(fits.begin(), fits.end());
    if (best == fits.end() || *best == Fit::None || *best == Fit::Unknown ||
        std::count(fits.begin(), fits.end(), *best) != 1)
        return std::nullopt;
    const InterfaceInfo &info = infos[static_cast<std::size_t>(best - fits.begin())];
    if (info.port.empty())
        return std::nullopt; // nothing would tell which device it has become
    return FirmwareTarget{info.path, info.port, *best == Fit::BootLoader};
}

} // namespace hidusb
