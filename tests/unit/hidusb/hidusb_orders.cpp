// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The orders of a connection that wait: which of them are one, and what a connection that ends still does.
#include "device/hidusb/OrderQueue.h"

#include <gtest/gtest.h>
#include <vector>

using namespace hidusb;
using wire::Command;

namespace
{

constexpr Order Read{Command::Battery};
constexpr Order OtherRead{Command::FlashRead, 1, 4};
constexpr Order Choose{Command::ConfigSelect, 1};
constexpr Order ChooseOther{Command::ConfigSelect, 2};
constexpr Order TakeCharge{Command::DriverStatus, 1};
constexpr Order LetGo{Command::DriverStatus, 0};

struct Row {
    const char *name;
    std::vector<Order> added;
    std::size_t waiting;
};
const Row Rows[] = {
    {"equal reads", {Read, Read, Read}, 1},
    {"other reads between them", {Read, OtherRead, Read, OtherRead}, 2},
    {"a change between them", {Read, Choose, Read}, 3},
    {"equal changes", {Choose, Choose}, 1},
    {"reads between equal changes", {Choose, Read, Choose, Read}, 2},
    {"another change between them", {Choose, ChooseOther, Choose}, 3},
    {"another argument", {TakeCharge, LetGo}, 2},
};

std::vector<Order> take(OrderQueue &queue)
{
    std::vector<Order> orders;
    for (; !queue.empty(); queue.removeBegun()) {
        queue.begin(1);
        orders.push_back(queue.front());
    }
    return orders;
}

} // namespace

TEST(Orders, EqualOnesThatDoTheSameAreOne)
{
    for (const Row &row : Rows) {
        OrderQueue queue;
        for (const Order &order : row.added)
            queue.add(order);
        EXPECT_EQ(take(queue).size(), row.waiting) << row.name;
    }
}

TEST(Orders, NoneIsLost)
{
    OrderQueue queue;
    for (int i = 0; i < 5000; ++i)
        queue.add(i % 2 == 0 ? Choose : ChooseOther);
    EXPECT_EQ(take(queue).size(), 5000U);
}

// The order under way may have been answered before the change that the new one asks for.
TEST(Orders, OneUnderWayDoesNotStandForANewOne)
{
    OrderQueue queue;
    queue.add(Read);
    queue.begin(1);
    queue.add(Read);
    queue.removeBegun();
    EXPECT_EQ(take(queue).size(), 1U);
}

TEST(Orders, AtTheEndReadsGoAndTheNewestDriverStatusIsLast)
{
    OrderQueue queue;
    for (const Order &order : {TakeCharge, Read, LetGo, Choose, OtherRead})
        queue.add(order);
    EXPECT_TRUE(queue.changesDevice());
    queue.prepareForEnd();
    const std::vector<Order> left = take(queue);
    ASSERT_EQ(left.size(), 2U);
    EXPECT_EQ(left[0].command, Command::ConfigSelect);
    EXPECT_EQ(left[1].command, Command::DriverStatus);
    EXPECT_EQ(left[1].argument, 0);
    queue.add(Read);
    EXPECT_FALSE(queue.changesDevice());
}
