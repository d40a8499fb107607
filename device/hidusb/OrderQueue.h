// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// OrderQueue: the program's requests to an open connection, first in, first out. It drops none, and it does
// not grow by repetition: an order that equals a waiting one is not added when both would do the same. Those
// at the front that are under way stay in the queue until they are done. Not thread-safe.
#pragma once

#include "device/hidusb/wire/Report.h"

#include <deque>

namespace hidusb
{

// A request of the program to an open connection.
struct Order {
    wire::Command command;
    uint8_t argument = 0; // for a flash read the number of bytes, 0 for the whole flash
    uint16_t address = 0;
};

// Sizes and message of an order; flash reads have a routine of their own.
struct OrderRow {
    wire::Command command;
    uint8_t requestSize; // 1: the argument is the payload
    uint8_t replySize;
    bool message;        // the reply is a message for the program
    uint8_t messageSize; // bytes of the reply that the message carries
};

// Null for a command that is no order.
const OrderRow *findOrderRow(wire::Command command);
bool isFullRead(const Order &order);
// It replaces the content of the flash.
bool changesProfile(const Order &order);
bool isRead(const Order &order);

class OrderQueue
{
public:
    void add(const Order &order);
    // Adds a full read unless one waits or is under way.
    void requireFullRead();

    bool empty() const { return orders_.empty(); }
    std::size_t size() const { return orders_.size(); }
    const Order &front() const { return orders_.front(); }
    bool holds(wire::Command command) const;
    bool hasBegun(wire::Command command) const;
    bool awaits(wire::Command command) const; // one that has not begun is there
    bool awaitsProfile() const;
    bool changesDevice() const; // an order is there that is more than a read

    // The first `count` orders are under way, until one of the next two ends that.
    void begin(std::size_t count) { begun_ = count; }
    void beginAll() { begun_ = orders_.size(); }
    void removeBegun();
    void keepBegun() { begun_ = 0; }

    // For a connection that ends: the reads go, since nobody would get their answers, and of the driver
    // statuses the newest comes last.
    void prepareForEnd();

private:
    std::deque<Order> orders_;
    std::size_t begun_ = 0;
};

} // namespace hidusb
