// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/OrderQueue.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace hidusb
{

using wire::Command;

static constexpr OrderRow OrderRows[] = {
    {Command::DriverStatus, 1, 0, false, 0},
    {Command::Battery, 0, sizeof(BatteryStatus), true, sizeof(BatteryStatus)},
    {Command::PairEnter, 1, 0, false, 0},
    {Command::PairStatus, 0, 1, true, 1},
    {Command::ClearSettings, 0, 0, false, 0},
    {Command::BatteryOptimize, 1, 0, false, 0},
    {Command::ConfigSelect, 1, 0, false, 0},
    {Command::Config, 0, 1, true, 1},
    {Command::Version, 0, sizeof(wire::VersionReply), true, 0},
};

static constexpr Order FullRead{Command::FlashRead};

const OrderRow *findOrderRow(Command command)
{
    const auto row = std::find_if(std::begin(OrderRows), std::end(OrderRows),
                                  [command](const OrderRow &other) { return other.command == command; });
    return row == std::end(OrderRows) ? nullptr : row;
}

bool isFullRead(const Order &order) { return order.command == Command::FlashRead && order.argument == 0; }

bool changesProfile(const Order &order)
{
    return order.command == Command::ConfigSelect || order.command == Command::ClearSettings;
}

static bool isSame(const Order &one, const Order &other)
{
    return one.command == other.command && one.argument == other.argument && one.address == other.address;
}

bool isRead(const Order &order)
{
    const OrderRow *row = findOrderRow(order.command);
    return order.command == Command::FlashRead || (row != nullptr && row->message);
}

// An equal order does the same only when none that changes the device stands between the two.
void OrderQueue::add(const Order &order)
{
    const auto waiting = orders_.rend() - static_cast<std::ptrdiff_t>(begun_);
    for (auto at = orders_.rbegin(); at != waiting; ++at) {
        if (isSame(*at, order))
            return;
        if (!isRead(*at))
            break;
    }
    orders_.push_back(order);
}

void OrderQueue::requireFullRead()
{
    if (std::none_of(orders_.begin(), orders_.end(), isFullRead))
        orders_.push_back(FullRead);
}

bool OrderQueue::holds(Command command) const
{
    return std::any_of(orders_.begin(), orders_.end(),
                       [command](const Order &order) { return order.command == command; });
}

bool OrderQueue::hasBegun(Command command) const
{
    const auto waiting = orders_.begin() + static_cast<std::ptrdiff_t>(begun_);
    return std::any_of(orders_.begin(), waiting,
                       [command](const Order &order) { return order.command == command; });
}

bool OrderQueue::awaits(Command command) const
{
    const auto waiting = orders_.begin() + static_cast<std::ptrdiff_t>(begun_);
    return std::any_of(waiting, orders_.end(),
                       [command](const Order &order) { return order.command == command; });
}

bool OrderQueue::awaitsProfile() const { return std::any_of(orders_.begin(), orders_.end(), changesProfile); }

bool OrderQueue::changesDevice() const { return !std::all_of(orders_.begin(), orders_.end(), isRead); }

void OrderQueue::removeBegun()
{
    orders_.erase(orders_.begin(), orders_.begin() + static_cast<std::ptrdiff_t>(begun_));
    begun_ = 0;
}

void OrderQueue::prepareForEnd()
{
    std::optional<Order> status;
    for (const Order &order : orders_) {
        if (order.command == Command::DriverStatus)
            status = order;
    }
    const auto goes = [](const Order &order) {
        return isRead(order) || order.command == Command::DriverStatus;
    };
    orders_.erase(std::remove_if(orders_.begin(), orders_.end(), goes), orders_.end());
    if (status)
        orders_.push_back(*status);
}

} // namespace hidusb
