// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The boot loader on the wire.
#include "tests/support/BootImage.h"
#include "tests/support/EmulatorFixture.h"

using wire::Command;
using Bytes = RawClient::Bytes;
using namespace bootimage;

namespace
{

class EmulatorBoot : public EmulatorFixture
{
protected:
    void enter(const std::string &id, uint8_t target)
    {
        RawClient client(folder_.path(), id);
        ASSERT_EQ(status(client.ask(Command::BootEnter, {target})), Ok);
        repeat(client, Command::BootEnter, {target});
    }
    // The acknowledgement may have been lost: a second order changes nothing. The device leaves the bus soon
    // after the first, and on a busy machine before the second comes.
    void repeat(RawClient &client, Command command, const Bytes &argument = {})
    {
        const auto again = client.ask(command, argument);
        EXPECT_TRUE(!again || status(again) == Ok);
        ASSERT_TRUE(client.waitForEnd());
    }
    void sendBlocks(RawClient &client, const Bytes &image)
    {
        for (std::size_t block = 0; block < blocksOf(image); ++block)
            ASSERT_EQ(
                status(client.ask(Command::BootData, blockOf(image, block), static_cast<uint16_t>(block))),
                Ok);
    }
    int flash(RawClient &client, const Bytes &image, uint32_t flip = 0)
    {
        EXPECT_EQ(status(client.ask(Command::BootBegin, beginOf(image, flip))), Ok);
        sendBlocks(client, image);
        return status(client.ask(Command::BootEnd));
    }
};

} // namespace

TEST(EmulatorCrc, IsTheUsualOne)
{
    const std::string text = "123456789";
    EXPECT_EQ(emulator::crc32(reinterpret_cast<const uint8_t *>(text.data()), text.size()), 0xCBF43926U);
    EXPECT_EQ(emulator::crc32(nullptr, 0), 0U);
}

TEST_F(EmulatorBoot, MouseOnItsCable)
{
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_TRUE(boot.isOpen());
    EXPECT_FALSE(RawClient::find(folder_.path(), "cable", wire::SettingsUsagePage));
    const auto name = RawClient::find(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_TRUE(name);
    EXPECT_EQ(wire::formatBusName(*name), "1209-0006-010a-0-ffb0-cable");
    EXPECT_EQ(payload(boot.ask(Command::BootIdentity)), (Bytes{wire::TargetMouse, 18, 6, 0}));
    EXPECT_EQ(status(boot.ask(Command::Identity)), Refused);
    EXPECT_EQ(flash(boot, firmware(wire::TargetMouse, 18, 6, 0x0203)), Ok);
    repeat(boot, Command::BootEnd);
    RawClient mouse(folder_.path(), "cable");
    EXPECT_EQ(payload(mouse.ask(Command::Version)), (Bytes{0x03, 0x02}));
    EXPECT_EQ(RawClient::find(folder_.path(), "cable", wire::SettingsUsagePage)->release, 0x0203);
    EXPECT_FALSE(RawClient::find(folder_.path(), "cable", wire::BootUsagePage));
}

TEST_F(EmulatorBoot, Receiver)
{
    enter("rx8k", wire::TargetReceiver);
    RawClient boot(folder_.path(), "rx8k", wire::BootUsagePage);
    const auto name = RawClient::find(folder_.path(), "rx8k", wire::BootUsagePage);
    ASSERT_TRUE(name);
    EXPECT_EQ(name->productId, 7);
    EXPECT_EQ(payload(boot.ask(Command::BootIdentity)), (Bytes{wire::TargetReceiver, 18, 9, 8}));
    EXPECT_EQ(flash(boot, firmware(wire::TargetReceiver, 18, 9, 0x0300)), Ok);
    ASSERT_TRUE(boot.waitForEnd());
    RawClient receiver(folder_.path(), "rx8k");
    EXPECT_EQ(payload(receiver.ask(Command::SlaveVersion)), (Bytes{0, 3}));
    EXPECT_EQ(payload(receiver.ask(Command::OnLine)), (Bytes{1, 0xA1, 0, 8}));
}

TEST_F(EmulatorBoot, ReceiverWithoutAMouseKnowsItsModel)
{
    enter("lone", wire::TargetReceiver);
    RawClient boot(folder_.path(), "lone", wire::BootUsagePage);
    EXPECT_EQ(payload(boot.ask(Command::BootIdentity)), (Bytes{wire::TargetReceiver, 18, 7, 1}));
}

TEST_F(EmulatorBoot, WrongImagesStayOut)
{
    struct Row {
        const char *what;
        Bytes image;
        uint32_t flip;
    };
    Bytes broken = firmware(wire::TargetMouse, 18, 6, 0x0203);
    broken.back() ^= 1;
    Bytes noMagic = firmware(wire::TargetMouse, 18, 6, 0x0203);
    noMagic[0] ^= 1;
    const Row rows[] = {
        {"wrong CRC of the whole", firmware(wire::TargetMouse, 18, 6, 0x0203), 1},
        {"wrong CRC in the head", broken, 0},
        {"no magic", noMagic, 0},
        {"for a receiver", firmware(wire::TargetReceiver, 18, 6, 0x0203), 0},
        {"for another customer", firmware(wire::TargetMouse, 17, 6, 0x0203), 0},
        {"for another model", firmware(wire::TargetMouse, 18, 7, 0x0203), 0},
    };
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(flash(boot, row.image, row.flip), Refused);
    }
    EXPECT_EQ(payload(boot.ask(Command::BootIdentity)), (Bytes{wire::TargetMouse, 18, 6, 0}));
    // And a right one still goes in.
    EXPECT_EQ(flash(boot, firmware(wire::TargetMouse, 18, 6, 0x0203)), Ok);
}

TEST_F(EmulatorBoot, AFileForAnotherReceiverClassStaysOut)
{
    enter("rx8k", wire::TargetReceiver);
    RawClient boot(folder_.path(), "rx8k", wire::BootUsagePage);
    for (const uint8_t kHz : {0, 1, 2, 4})
        EXPECT_EQ(flash(boot, firmware(wire::TargetReceiver, 18, 9, 0x0300, ImageSize, kHz)), Refused)
            << int{kHz};
    EXPECT_EQ(flash(boot, firmware(wire::TargetReceiver, 18, 9, 0x0300, ImageSize, 8)), Ok);
}

TEST_F(EmulatorBoot, TheEraseTakesItsTimeOnceForEachImage)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    const auto busyThenOk = [](RawClient &boot, const Bytes &begin) {
        int answer = status(boot.ask(Command::BootBegin, begin));
        EXPECT_EQ(answer, Busy);
        while (answer == Busy)
            answer = status(boot.ask(Command::BootBegin, begin));
        EXPECT_EQ(answer, Ok);
    };
    order("erase cable 60000");
    enter("cable", wire::TargetMouse);
    RawClient erasing(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_EQ(status(erasing.ask(Command::BootBegin, beginOf(image))), Busy);
    EXPECT_EQ(status(erasing.ask(Command::BootData, blockOf(image, 0), 0)), Busy);
    EXPECT_EQ(status(erasing.ask(Command::BootEnd)), Busy);
    order("boot cable enter"); // drops what had been announced
    order("erase cable 100");
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    busyThenOk(boot, beginOf(image));
    sendBlocks(boot, image);
    EXPECT_EQ(status(boot.ask(Command::BootBegin, beginOf(image))), Ok) << "erased again";
    EXPECT_EQ(status(boot.ask(Command::BootEnd)), Ok) << "the blocks are gone";
}

TEST_F(EmulatorBoot, AnotherImageAndARefusedOneAreErased)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    Bytes broken = image;
    broken.back() ^= 1;
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    EXPECT_EQ(flash(boot, broken), Refused);
    order("erase cable 60000");
    EXPECT_EQ(status(boot.ask(Command::BootBegin, beginOf(broken))), Busy) << "after a refused BootEnd";
    order("boot cable enter"); // drops what had been announced
    order("erase cable 0");
    RawClient again(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_EQ(status(again.ask(Command::BootBegin, beginOf(broken))), Ok);
    order("erase cable 60000");
    EXPECT_EQ(status(again.ask(Command::BootBegin, beginOf(image))), Busy) << "another image";
}

TEST_F(EmulatorBoot, AMouseWithALowBatteryStaysOut)
{
    RawClient client(folder_.path(), "cable");
    order("battery cable 19");
    EXPECT_EQ(status(client.ask(Command::BootEnter, {wire::TargetMouse})), Refused);
    order("battery cable 19 charging");
    enter("cable", wire::TargetMouse);
    EXPECT_TRUE(RawClient(folder_.path(), "cable", wire::BootUsagePage).isOpen());
}

TEST_F(EmulatorBoot, BootLeaveStartsAnUntouchedImageOnly)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    enter("cable", wire::TargetMouse);
    {
        RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
        order("boottimes 1000 60");
        EXPECT_EQ(status(boot.ask(Command::BootLeave)), Ok);
        EXPECT_EQ(status(boot.ask(Command::BootBegin, beginOf(image))), Refused) << "it is leaving";
        EXPECT_TRUE(boot.waitForEnd());
        order("boottimes 30 60");
    }
    RawClient mouse(folder_.path(), "cable");
    EXPECT_EQ(payload(mouse.ask(Command::Version)), (Bytes{0x0A, 0x01})) << "the old image";
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_EQ(status(boot.ask(Command::BootBegin, beginOf(image))), Ok);
    EXPECT_EQ(status(boot.ask(Command::BootLeave)), Refused);
    EXPECT_EQ(flash(boot, image), Ok);
}

TEST_F(EmulatorBoot, APowerCycleStartsWhatIsWhole)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    order("fault cable powercut at 1");
    boot.post(Command::BootIdentity);
    ASSERT_TRUE(boot.waitForEnd());
    RawClient mouse(folder_.path(), "cable");
    EXPECT_EQ(payload(mouse.ask(Command::Version)), (Bytes{0x0A, 0x01})) << "untouched";

    enter("cable", wire::TargetMouse);
    RawClient erased(folder_.path(), "cable", wire::BootUsagePage);
    ASSERT_EQ(status(erased.ask(Command::BootBegin, beginOf(image))), Ok);
    order("fault cable powercut at 1");
    erased.post(Command::BootIdentity);
    ASSERT_TRUE(erased.waitForEnd());
    RawClient again(folder_.path(), "cable", wire::BootUsagePage);
    EXPECT_EQ(status(again.ask(Command::BootEnd)), Refused) << "what had been announced is gone";
    order("boottimes 60000 60"); // it stays there after BootEnd
    ASSERT_EQ(flash(again, image), Ok);
    order("fault cable powercut at 1");
    again.post(Command::BootIdentity);
    ASSERT_TRUE(again.waitForEnd());
    RawClient renewed(folder_.path(), "cable");
    EXPECT_EQ(payload(renewed.ask(Command::Version)), (Bytes{0x03, 0x02})) << "accepted before the cut";
}

TEST_F(EmulatorBoot, ABrokenOneStaysUntilItIsFlashed)
{
    order("boot cable broken");
    order("unplug cable");
    order("plug cable");
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    EXPECT_EQ(status(boot.ask(Command::BootLeave)), Refused);
    EXPECT_EQ(flash(boot, firmware(wire::TargetMouse, 18, 6, 0x0203)), Ok);
    EXPECT_TRUE(RawClient(folder_.path(), "cable").isOpen());
}

TEST_F(EmulatorBoot, BlocksAreChecked)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    const auto last = static_cast<uint16_t>(blocksOf(image) - 1);
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    EXPECT_EQ(status(boot.ask(Command::BootData, blockOf(image, 0), 0)), Refused); // before BootBegin
    EXPECT_EQ(status(boot.ask(Command::BootEnd)), Refused);
    ASSERT_EQ(status(boot.ask(Command::BootBegin, beginOf(image))), Ok);
    EXPECT_EQ(status(boot.ask(Command::BootData, blockOf(image, 0), static_cast<uint16_t>(last + 1))),
              Refused);
    EXPECT_EQ(status(boot.ask(Command::BootData, blockOf(image, 0), 0xFFFF)), Refused);
    EXPECT_EQ(status(boot.ask(Command::BootData, Bytes(55, 0), 0)), Refused);
    EXPECT_EQ(status(boot.ask(Command::BootData, Bytes(56, 0), last)), Refused);
    EXPECT_EQ(status(boot.ask(Command::BootData, {}, 0)), Refused);
    for (uint16_t block = 0; block < last; ++block)
        ASSERT_EQ(status(boot.ask(Command::BootData, blockOf(image, block), block)), Ok);
    EXPECT_EQ(status(boot.ask(Command::BootEnd)), Refused);                   // the last block is missing
    EXPECT_EQ(status(boot.ask(Command::BootData, blockOf(image, 0), 0)), Ok); // a repeated block
    EXPECT_EQ(status(boot.ask(Command::BootData, blockOf(image, last), last)), Ok);
    EXPECT_EQ(status(boot.ask(Command::BootEnd)), Ok);
}

TEST_F(EmulatorBoot, SizesAreChecked)
{
    enter("cable", wire::TargetMouse);
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    for (const uint32_t size : {0U, 727U, wire::FirmwareSizeLimit + 1, 0xFFFFFFFFU}) {
        wire::BootBeginRequest begin{};
        begin.Length.set(size);
        const auto *bytes = reinterpret_cast<const uint8_t *>(&begin);
        EXPECT_EQ(status(boot.ask(Command::BootBegin, Bytes(bytes, bytes + sizeof begin))), Refused) << size;
    }
    EXPECT_EQ(status(boot.ask(Command::BootBegin, Bytes(7, 0))), Refused);
    EXPECT_EQ(flash(boot, firmware(wire::TargetMouse, 18, 6, 0x0203, sizeof(wire::FirmwareHead))), Ok);
}

TEST_F(EmulatorBoot, BrokenUpgradeStaysABootLoader)
{
    const Bytes image = firmware(wire::TargetMouse, 18, 6, 0x0203);
    enter("cable", wire::TargetMouse);
    {
        RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
        ASSERT_EQ(status(boot.ask(Command::BootBegin, beginOf(image))), Ok);
        sendBlocks(boot, image);
        order("unplug cable");
        EXPECT_TRUE(boot.waitForEnd());
    }
    order("plug cable");
    RawClient boot(folder_.path(), "cable", wire::BootUsagePage);
    // What had been received went with the power.
    EXPECT_EQ(status(boot.ask(Command::BootEnd)), Refused);
    EXPECT_EQ(flash(boot, image), Ok);
}

TEST_F(EmulatorBoot, MouseInItsBootLoaderIsOffTheAir)
{
    RawClient receiver(folder_.path(), "rx1k");
    order("boot air1 enter");
    EXPECT_EQ(payload(receiver.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    order("boot air1 leave");
    EXPECT_EQ(payload(receiver.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 1}));
}
