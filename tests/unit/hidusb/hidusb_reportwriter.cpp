// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reports are written in order on another thread, and none after the writer's end. A full pipe stands for a
// device that hangs.
#include "device/hidusb/ReportWriter.h"
#include "tests/support/Eventually.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

using hidusb::ReportWriter;
using support::eventually;

class NodeWriter : public testing::Test
{
protected:
    void SetUp() override
    {
        int ends[2];
        ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        read_ = ends[0];
        capacity_ = static_cast<std::size_t>(::fcntl(ends[1], F_SETPIPE_SZ, 4096));
        writer_.emplace(ends[1], "pipe");
    }
    void TearDown() override { ::close(read_); }

    bool post(char letter, std::size_t size = 1)
    {
        const std::vector<uint8_t> report(size, static_cast<uint8_t>(letter));
        return writer_->post(report.data(), report.size());
    }
    // Returns when the other end is closed.
    std::string readAll() const
    {
        std::string all;
        char bytes[4096];
        for (ssize_t size = 0; (size = ::read(read_, bytes, sizeof bytes)) > 0;)
            all.append(bytes, static_cast<std::size_t>(size));
        return all;
    }
    // Fills the pipe: later writes block until it is read.
    void fill()
    {
        ASSERT_TRUE(post('a', capacity_));
        ASSERT_TRUE(eventually([this] { return waiting() == capacity_; }));
    }
    std::size_t waiting() const
    {
        int size = 0;
        return ::ioctl(read_, FIONREAD, &size) == 0 ? static_cast<std::size_t>(size) : 0;
    }

    int read_ = -1;
    std::size_t capacity_ = 0;
    std::optional<ReportWriter> writer_;
};

TEST_F(NodeWriter, InOrder)
{
    for (const char letter : {'1', '2', '3'})
        EXPECT_TRUE(post(letter));
    ASSERT_TRUE(eventually([this] { return waiting() == 3; }));
    writer_.reset();
    EXPECT_EQ(readAll(), "123");
}

TEST_F(NodeWriter, ReportsThatWaitAtTheEndAreDropped)
{
    fill();
    EXPECT_TRUE(post('b')); // may be under way
    EXPECT_TRUE(post('c'));
    writer_.reset();
    const std::string all = readAll();
    EXPECT_EQ(all.find('c'), std::string::npos);
    EXPECT_EQ(all.substr(0, capacity_), std::string(capacity_, 'a'));
}

TEST_F(NodeWriter, TheQueueForADeviceThatHangsIsBounded)
{
    fill();
    int taken = 0;
    while (taken < 100 && post('b'))
        ++taken;
    EXPECT_GE(taken, 32);
    EXPECT_LE(taken, 33); // one of them may be under way
    writer_.reset();
    readAll();
}
