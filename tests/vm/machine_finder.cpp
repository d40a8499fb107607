// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finding devices, asking them, and the permission to do so, on the kernel's own nodes.
#include "tests/support/QuietFailure.h"
#include "tests/vm/MachineFixture.h"

#include <future>
#include <grp.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

struct LinkRow {
    const char *id;
    const char *mouse;
    const char *product;
    uint8_t mid;
    uint8_t kind;
    uint16_t version;      // of the device at the plug
    uint16_t mouseVersion; // of its mouse
    int address;           // of both
};
constexpr LinkRow Links[] = {
    {"rx1k", "air1", "0002", 6, 0, 0x0201, 0x0105, 0xA10001},
    {"rx2k", "air2", "0003", 7, 4, 0x0202, 0x0106, 0xA10002},
    {"rx4k", "air4", "0004", 8, 1, 0x0203, 0x0107, 0xA10004},
    {"rx8k", "air8", "0005", 9, 5, 0x0204, 0x0108, 0xA10008},
    {"wired", "wired", "0001", 6, 3, 0x010A, 0x010A, 0xC0FFEE},
};

class Finder : public MachineTest, public testing::WithParamInterface<LinkRow>
{
};

TEST_P(Finder, NamesAndAsksADevice)
{
    const LinkRow &row = GetParam();
    plug(row.id);
    const std::string node = nodeOf(row.id);
    const char *path = node.c_str();
    EXPECT_EQ(find(row.product), std::vector<std::string>{node});
    int32_t count = 5;
    const char *const *paths = UsbFinderC_FindHidDevicesByDefaultDeviceId("0x1209", row.product, &count);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(paths[0], node);
    EXPECT_TRUE(find("0099").empty());

    const DeviceIdentity identity = UsbFinderC_GetDeviceInfo(path, 0);
    EXPECT_EQ(identity.Cid, 18);
    EXPECT_EQ(identity.Mid, row.mid);
    EXPECT_EQ(identity.DeviceKind, row.kind);
    UsbAttribute attribute{};
    UsbFinderC_GetUsbDeviceAttribute(path, &attribute);
    EXPECT_EQ(attribute.Size.get(), sizeof attribute);
    EXPECT_EQ(attribute.VendorId.get(), 0x1209);
    EXPECT_EQ(attribute.ProductId.get(), std::stoi(row.product, nullptr, 16));
    EXPECT_EQ(attribute.Version.get(), row.version);
    EXPECT_TRUE(UsbFinderC_GetDeviceOnLine(path));
    OnlineAddress address{};
    EXPECT_TRUE(UsbFinderC_GetDeviceOnLineWithUsbAddress(path, &address));
    EXPECT_EQ(address.Address[0] << 16 | address.Address[1] << 8 | address.Address[2], row.address);
    EXPECT_EQ(UsbFinderC_GetVersion(path) & 0xFFFF, row.mouseVersion);
    uint32_t slave = 0;
    EXPECT_EQ(UsbFinderC_GetSlaveVersion(path, &slave), row.version != row.mouseVersion);
    EXPECT_EQ(slave, row.version != row.mouseVersion ? row.version : 0U);
    expectHealthy(row.id, row.mouse);
    // A mouse that is not there, and a device that is not.
    if (row.id != std::string(row.mouse)) {
        order(std::string("radio ") + row.mouse + " off");
        EXPECT_FALSE(UsbFinderC_GetDeviceOnLine(path));
        order(std::string("radio ") + row.mouse + " on");
    }
    unplug(row.id);
    support::expectQuietFailure(path);
    EXPECT_TRUE(find(row.product).empty());
}

// What the program asks of before anything is selected, and nodes of other kinds.
TEST_F(MachineTest, APathWithoutADeviceFailsQuietly)
{
    plug("rx8k"); // which none of them names
    for (const char *path : {"a", "", "/dev/null", "/dev/hidraw99"})
        support::expectQuietFailure(path);
    expectHealthy("rx8k", "air8");
}

INSTANTIATE_TEST_SUITE_P(Links, Finder, testing::ValuesIn(Links),
                         [](const auto &what) { return std::string(what.param.id); });

class Permissions : public MachineTest
{
protected:
    static constexpr unsigned nobody = 65534;

    // By the tag a desktop opens the node to whoever sits at it; udev keeps a file for each tagged device.
    static bool isTaggedForTheSeat(const std::string &node)
    {
        struct stat status = {};
        EXPECT_EQ(::stat(node.c_str(), &status), 0) << node;
        const std::string device =
            "c" + std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
        return std::filesystem::exists("/run/udev/tags/uaccess/" + device);
    }
    // The result of asking the device by somebody who is not root; -1 when the asking itself failed.
    static int askAsNobody(const std::string &path, const char *group)
    {
        const struct group *found = group != nullptr ? ::getgrnam(group) : nullptr;
        const std::string groups =
            found != nullptr ? "--groups=" + std::to_string(found->gr_gid) : "--clear-groups";
        const std::string command = "setpriv --reuid=" + std::to_string(nobody) +
                                    " --regid=" + std::to_string(nobody) + " " + groups + " " +
                                    MACHINE_ASK " " + path;
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(Permissions, TheRulesOfTheCatalogueOpenItsDevicesAndNoOthers)
{
    plug("rx8k");
    const std::string node = nodeOf("rx8k");
    EXPECT_TRUE(isTaggedForTheSeat(node));
    EXPECT_EQ(askAsNobody(node, nullptr), 1);
    EXPECT_EQ(askAsNobody(node, "plugdev"), 0);
    // A product that the catalogue does not know stays root's.
    serve("usb vendor 1209 cable 0091 1k 0092 2k 0093 4k 0094 8k 0095 mouseboot 0096 receiverboot 0097\n"
          "mouse other cid 18 mid 6\nplug other\n");
    EXPECT_FALSE(isTaggedForTheSeat(nodeOf("other")));
    EXPECT_EQ(askAsNobody(nodeOf("other"), "plugdev"), 1);
    EXPECT_TRUE(UsbFinderC_GetDeviceOnLine(nodeOf("other").c_str()));
}

// Of this process's threads, whose permissions the kernel checks at each opening.
TEST_F(Permissions, ADeviceThatCannotBeOpenedCanOnceItMay)
{
    plug("rx8k");
    const std::string node = nodeOf("rx8k");
    const uid_t root = ::geteuid();
    ASSERT_EQ(::setgroups(0, nullptr), 0);
    ASSERT_EQ(::seteuid(nobody), 0);
    EXPECT_EQ(find("0005"), std::vector<std::string>{node}) << "it is there, whoever may open it";
    EXPECT_FALSE(UsbFinderC_GetDeviceOnLine(node.c_str()));
    UsbServerC_Start(node.c_str(), node.c_str(), support::logMessage<0>);
    UsbServer_ReadAllFlashData();
    EXPECT_EQ(UsbFinderC_GetDeviceInfo(node.c_str(), 0).Cid, 0);
    EXPECT_EQ(emulator_.reportCount("rx8k"), 0U);
    ASSERT_EQ(::seteuid(root), 0);
    ASSERT_EQ(::chmod(node.c_str(), 0666), 0);
    ASSERT_EQ(::seteuid(nobody), 0);
    expectHealthy("rx8k", "air8");
    ASSERT_EQ(::seteuid(root), 0);
}

// udev sets its permissions; until then it would only seem to be refused.
TEST_F(Permissions, ANodeThatUdevHasNotDealtWithIsNotThereYet)
{
    ASSERT_EQ(std::system("pkill -STOP -x systemd-udevd || pkill -STOP udevd"), 0);
    order("plug rx8k");
    const bool made = support::eventually([] { return !nodeOf("rx8k").empty(); });
    const std::size_t before = find("0005").size();
    ASSERT_EQ(std::system("pkill -CONT -x systemd-udevd || pkill -CONT udevd"), 0);
    EXPECT_TRUE(made);
    EXPECT_EQ(before, 0U);
    settle();
    EXPECT_EQ(find("0005"), std::vector<std::string>{nodeOf("rx8k")});
    expectHealthy("rx8k", "air8");
}

class Receiver : public MachineTest
{
};

TEST_F(Receiver, ItsOwnSettingsAreReadAndWritten)
{
    plug("rx4k");
    const std::string node = nodeOf("rx4k");
    const char *path = node.c_str();
    uint32_t version = 0;
    EXPECT_TRUE(UsbFinderC_GetSlaveVersion(path, &version));
    EXPECT_EQ(version & 0xFFFF, 0x0203U);
    DongleRGB color{};
    color.Scheme = 2;
    UsbFinderC_Set4KDongleRGB(path, &color);
    color.Scheme = 0;
    UsbFinderC_Get4KDongleRGBValue(path, &color);
    EXPECT_EQ(color.Scheme, 2);
    UsbFinderC_SetLongRangeMode(path, 1);
    uint8_t mode = 's';
    UsbFinderC_GetLongRangeMode(path, &mode);
    EXPECT_EQ(mode, 1);
    DongleRgbBar bar{3, 10, 20, 30, 4, 5, 1};
    EXPECT_TRUE(UsbFinderC_SetDongleRGBBarMode(path, &bar));
    DongleRgbBar read{};
    UsbFinderC_GetDongleRGBBarMode(path, &read);
    EXPECT_EQ(std::memcmp(&bar, &read, sizeof bar), 0);
    const DongleIndicator indicator{{2, 0, 1}};
    EXPECT_TRUE(UsbFinderC_SetDongleIndicatorLed(path, &indicator));
    DongleIndicator shown{};
    UsbFinderC_GetDongleIndicatorLed(path, &shown);
    EXPECT_EQ(std::memcmp(&indicator, &shown, sizeof shown), 0);
    expectHealthy("rx4k", "air4");
}

// By its cable a mouse learns the receiver that it shall answer to.
TEST_F(Receiver, AMouseTakesTheAddressOfAnother)
{
    plug("wired");
    plug("rx1k");
    order("radio air1 off");
    OnlineAddress address{};
    UsbFinderC_GetDeviceOnLineWithUsbAddress(nodeOf("rx1k").c_str(), &address);
    const uint8_t pairing[] = {address.Address[2], address.Address[1], address.Address[0], 0, 0};
    UsbFinderC_SetDongleIDToMouse(nodeOf("wired").c_str(), pairing);
    EXPECT_TRUE(UsbFinderC_GetDeviceOnLineWithUsbAddress(nodeOf("wired").c_str(), &address));
    EXPECT_EQ(address.Address[0] << 16 | address.Address[1] << 8 | address.Address[2], 0xA10001);
    expectHealthy("wired", "wired");
}

TEST_F(Receiver, AScreenIsAnotherCollectionOfTheSameNode)
{
    plug("wired");
    const std::string node = nodeOf("wired");
    EXPECT_EQ(find("0001", 8), std::vector<std::string>{node});
    ASSERT_TRUE(UsbFinderC_OpenDevice(node.c_str()));
    uint8_t request[40] = {0x0A, 0x00, 0x10, 7};
    uint8_t reply[40] = {};
    UsbFinderC_ReadWriteDeviceData(request, reply, sizeof request);
    EXPECT_EQ(std::memcmp(request, reply, sizeof request), 0);
    // Its node is let go of, and the number with it.
    unplug("wired");
    UsbFinderC_ReadWriteDeviceData(request, reply, sizeof request);
    plug("wired");
    EXPECT_EQ(nodeOf("wired"), node);
    expectHealthy("wired", "wired");
}

// Interfaces come in any order: the number and the page say what each is, not its place.
TEST_F(Receiver, TheSecondInterfaceMayComeFirst)
{
    plug("rx8k");
    watch("0005");
    const std::filesystem::path device = usbnodes::folderOf("rx8k");
    const std::string name = device.filename().string();
    const auto tell = [](const std::string &file, const std::string &interface) {
        std::ofstream("/sys/bus/usb/drivers/usbhid/" + file) << interface << std::flush;
    };
    for (const char *number : {"0", "1"})
        tell("unbind", name + ":1." + number);
    ASSERT_TRUE(support::eventually([] { return usbnodes::present().empty(); }));
    EXPECT_TRUE(watchSees({}));
    tell("bind", name + ":1.1");
    ASSERT_TRUE(support::eventually([this] { return !nodeOf("rx8k").empty(); }));
    const std::string node = nodeOf("rx8k");
    ASSERT_TRUE(watchSees({node}));
    tell("bind", name + ":1.0");
    settle();
    EXPECT_LT(node, nodeOf("rx8k", 0));
    EXPECT_EQ(find("0005"), std::vector<std::string>{node});
    EXPECT_TRUE(watchSees({node}));
    expectHealthy("rx8k", "air8");
}

// Asks for a record that is preset; true when something was written into it. What has a result says no.
template <typename Result, typename Record>
static bool fills(Result (*get)(const char *, Record *), const char *path)
{
    Record preset;
    std::memset(&preset, 's', sizeof preset);
    Record record = preset;
    if constexpr (std::is_void_v<Result>)
        get(path, &record);
    else
        EXPECT_FALSE(get(path, &record));
    return std::memcmp(&record, &preset, sizeof record) != 0;
}

struct QuestionRow {
    const char *name;
    bool (*tells)(const char *path);
};
constexpr QuestionRow Questions[] = {
    {"identity", [](const char *path) { return UsbFinderC_GetDeviceInfo(path, 0).Cid != 0; }},
    {"on line", [](const char *path) { return UsbFinderC_GetDeviceOnLine(path) != 0; }},
    {"address", [](const char *path) { return fills(UsbFinderC_GetDeviceOnLineWithUsbAddress, path); }},
    {"version", [](const char *path) { return UsbFinderC_GetVersion(path) != 0; }},
    {"receiver's version", [](const char *path) { return fills(UsbFinderC_GetSlaveVersion, path); }},
    {"color", [](const char *path) { return fills(UsbFinderC_Get4KDongleRGBValue, path); }},
    {"bar", [](const char *path) { return fills(UsbFinderC_GetDongleRGBBarMode, path); }},
    {"indicator", [](const char *path) { return fills(UsbFinderC_GetDongleIndicatorLed, path); }},
    {"long range", [](const char *path) { return fills(UsbFinderC_GetLongRangeMode, path); }},
};

class Silence : public MachineTest
{
protected:
    void SetUp() override
    {
        MachineTest::SetUp();
        plug("rx4k");
        ASSERT_TRUE(load(nodeOf("rx4k")));
        order("fault rx4k noreply always");
    }
};

TEST_F(Silence, EachQuestionEndsAndTellsNothing)
{
    const std::string path = nodeOf("rx4k");
    for (const QuestionRow &row : Questions) {
        // No measurement: a question takes half a second, one that hangs never ends.
        constexpr std::chrono::seconds enough(2);
        auto answer = std::async(std::launch::async, row.tells, path.c_str());
        EXPECT_EQ(answer.wait_for(enough), std::future_status::ready) << row.name;
        EXPECT_FALSE(answer.get()) << row.name;
    }
    order("fault rx4k clear");
    expectHealthy("rx4k", "air4");
}

// Orders are carried out in their row: what stands behind a read is asked once the read has ended.
TEST_F(Silence, ALoadEndsAndTellsNothing)
{
    const auto reads = [this] { return emulator_.reportCount("rx4k", wire::Command::FlashRead); };
    const auto behind = [this] { return emulator_.reportCount("rx4k", wire::Command::Config); };
    const uint64_t before = reads();
    log().clear();
    UsbServer_ReadAllFlashData();
    UsbServer_ReadConfig();
    EXPECT_TRUE(support::eventually([&] { return behind() == 3; })) << behind() << " of the three tries";
    EXPECT_GT(reads(), before);
    EXPECT_EQ(log().size(), 0U);
    order("fault rx4k clear");
    expectHealthy("rx4k", "air4");
}
