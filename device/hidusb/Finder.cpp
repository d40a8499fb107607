// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Finder.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <set>

namespace hidusb
{

constexpr int32_t PathLimit = 64;

std::optional<uint16_t> parseId(const char *text)
{
    if (text == nullptr)
        return std::nullopt;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text += 2;
    const std::size_t digits = std::strspn(text, "0123456789abcdefABCDEF");
    if (digits < 1 || digits > 4 || text[digits] != '\0')
        return std::nullopt;
    return static_cast<uint16_t>(std::stoul(text, nullptr, 16));
}

template <typename Fits> static std::vector<InterfaceInfo> findAll(Fits fits)
{
    std::vector<InterfaceInfo> found = bus().enumerate();
    found.erase(std::remove_if(found.begin(), found.end(), [fits](const auto &info) { return !fits(info); }),
                found.end());
    return found;
}

namespace
{

struct KnownVendors {
    std::mutex mutex;
    std::set<uint16_t> ids;
};

KnownVendors &knownVendors()
{
    static auto *known = new KnownVendors;
    return *known;
}

} // namespace

std::vector<InterfaceInfo> findOfKnownVendors()
{
    std::unique_lock lock(knownVendors().mutex);
    const std::set<uint16_t> known = knownVendors().ids;
    lock.unlock();
    return findAll([&known](const InterfaceInfo &info) { return known.count(info.vendorId) > 0; });
}

std::optional<InterfaceInfo> findByPath(const char *path)
{
    if (path == nullptr)
        return std::nullopt;
    const auto found = findAll([path](const InterfaceInfo &info) { return info.path == path; });
    return found.empty() ? std::nullopt : std::make_optional(found.front());
}

const char *const *findPaths(const char *vendorId, const char *productId, int interfaceNumber, int usagePage,
                             int32_t *count)
{
    static thread_local std::vector<InterfaceInfo> found;
    static thread_local std::vector<const char *> paths;
    const auto vendor = parseId(vendorId);
    const auto product = parseId(productId);
    const int32_t most = count != nullptr ? std::clamp(*count, 0, PathLimit) : 0;
    found.clear();
    if (vendor) {
        const std::lock_guard lock(knownVendors().mutex);
        knownVendors().ids.insert(*vendor);
    }
    if (vendor && product && most > 0)
        found = findAll([&](const InterfaceInfo &info) {
            return info.vendorId == *vendor && info.productId == *product &&
                   info.interfaceNumber == interfaceNumber && info.usagePage == usagePage;
        });
    found.resize(std::min(found.size(), static_cast<std::size_t>(most)));
    paths.clear();
    for (const InterfaceInfo &info : found)
        paths.push_back(info.path.c_str());
    if (count != nullptr)
        *count = static_cast<int32_t>(paths.size());
    paths.push_back(nullptr);
    return paths.data();
}

} // namespace hidusb
