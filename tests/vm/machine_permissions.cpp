// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The program as it is delivered, run by a user who is not root, on nodes that it may not open: what it says,
// and that the device is there as soon as the permission is granted.
#include "tests/vm/MachineFixture.h"

#include <sys/stat.h>
#include <sys/wait.h>

namespace fs = std::filesystem;

class OrdinaryUser : public MachineTest
{
protected:
    static constexpr const char *Rules = "/etc/udev/rules.d/70-morlen.rules";

    void SetUp() override
    {
        MachineTest::SetUp();
        constexpr unsigned nobody = 65534;
        ASSERT_EQ(::chown(home_.path().c_str(), nobody, nobody), 0);
    }
    void TearDown() override
    {
        endProgram();
        keepPictures();
        installRules();
        MachineTest::TearDown();
    }

    static void run(const std::string &command)
    {
        // Root has no need of sudo, and this machine none of it.
        const std::string line = "bash -c '" + ("sudo() { \"$@\"; }; " + command) + "'";
        ASSERT_EQ(std::system(line.c_str()), 0) << line;
    }
    static void installRules()
    {
        fs::copy_file(PRODUCT_DIR "/70-morlen.rules", Rules, fs::copy_options::overwrite_existing);
        run("udevadm control --reload");
    }
    static void removeRules()
    {
        fs::remove(Rules);
        run("udevadm control --reload");
    }

    void startProgram(const std::string &groups)
    {
        const std::string log = "PAGE_LOG=" + log_;
        const std::string place = "TMPDIR=" + home_.path();
        const std::string data = "XDG_DATA_HOME=" + home_.path();
        program_ = ::fork();
        if (program_ != 0)
            return;
        ::execlp("setpriv", "setpriv", "--reuid=65534", "--regid=65534", groups.c_str(), "env",
                 "LD_PRELOAD=" PAGE_LOG, "QT_QPA_PLATFORM=offscreen", log.c_str(), place.c_str(),
                 data.c_str(), PRODUCT_DIR "/morlen", nullptr);
        ::_exit(127);
    }
    void endProgram()
    {
        if (program_ <= 0)
            return;
        ::kill(program_, SIGTERM);
        ::waitpid(program_, nullptr, 0);
        program_ = 0;
    }
    void keepPictures() const
    {
        const char *out = std::getenv("OUT");
        if (out == nullptr)
            return;
        const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
        std::error_code error;
        for (const auto &file : fs::directory_iterator(home_.path(), error))
            if (file.path().extension() == ".png")
                fs::copy_file(file, out + ("/" + test) + file.path().filename().string(), error);
    }

    // What the page shows now; fields end in a tab.
    std::string page() const
    {
        std::ifstream lines(log_);
        std::string last;
        for (std::string line; std::getline(lines, line);)
            last = line + '\t';
        return last;
    }
    std::string shown(const std::string &name) const
    {
        const std::string all = page();
        const std::size_t at = all.find(name + "=");
        const std::size_t start = at + name.size() + 1;
        return at == std::string::npos ? std::string() : all.substr(start, all.find('\t', start) - start);
    }
    // A program takes its time to start in a machine that is emulated.
    bool comesToShow(const std::string &name, const std::string &text) const
    {
        const auto holds = [&] { return shown(name).find(text) != std::string::npos; };
        for (int i = 0; i < 3; ++i)
            if (support::eventually(holds))
                return true;
        ADD_FAILURE() << "not " << name << " " << text << " but: " << page();
        return false;
    }
    void expectTile()
    {
        ASSERT_TRUE(comesToShow("tiles", "1"));
        EXPECT_TRUE(support::eventually([this] { return shown("title").empty(); })) << page();
        EXPECT_EQ(shown("prompt"), "");
    }

    // How many of them the program has, by the name of their folder in /proc.
    std::size_t held(const std::string &what) const
    {
        return countIn(("/proc/" + std::to_string(program_) + "/" + what).c_str());
    }

    TempFolder home_;
    const std::string log_ = home_ / "page";
    pid_t program_ = 0;
};

TEST_F(OrdinaryUser, TheCommandThatIsShownBringsTheTile)
{
    removeRules();
    plug("rx8k");
    startProgram("--groups=plugdev");
    ASSERT_TRUE(comesToShow("title", nodeOf("rx8k")));
    EXPECT_EQ(shown("tiles"), "0");
    EXPECT_NE(shown("text").find("70-morlen.rules"), std::string::npos) << page();
    EXPECT_NE(shown("prompt").find("A device is connected"), std::string::npos) << page();
    const std::string command = shown("command");
    ASSERT_EQ(command.rfind("sudo cp ", 0), 0U) << command;
    run(command);
    expectTile();
}

TEST_F(OrdinaryUser, ARightWithoutAnEventIsSeen)
{
    plug("rx8k");
    startProgram("--clear-groups");
    ASSERT_TRUE(comesToShow("title", nodeOf("rx8k")));
    EXPECT_EQ(shown("command"), "sudo usermod -aG plugdev $USER");
    ASSERT_EQ(::chmod(nodeOf("rx8k").c_str(), 0666), 0);
    expectTile();
    unplug("rx8k");
    EXPECT_TRUE(comesToShow("prompt", "Connect a mouse"));
    EXPECT_EQ(shown("tiles"), "0");
}

TEST_F(OrdinaryUser, ADeviceThatWentLeavesNothingBehind)
{
    startProgram("--groups=plugdev");
    ASSERT_TRUE(comesToShow("prompt", "Connect a mouse"));
    const std::size_t threads = held("task");
    const std::size_t files = held("fd");
    for (int round = 0; round < 2; ++round) {
        plug("rx8k");
        expectTile();
        unplug("rx8k");
        ASSERT_TRUE(comesToShow("prompt", "Connect a mouse"));
        EXPECT_TRUE(support::eventually([&] { return held("task") == threads; }))
            << held("task") << " threads, before " << threads;
        EXPECT_TRUE(support::eventually([&] { return held("fd") == files; }))
            << held("fd") << " descriptors, before " << files;
    }
}

TEST_F(OrdinaryUser, ARuleThatGoesWithTheNextPlugIsSeen)
{
    removeRules();
    plug("rx4k");
    plug("rx8k");
    startProgram("--groups=plugdev");
    ASSERT_TRUE(comesToShow("title", nodeOf("rx4k")));
    EXPECT_TRUE(comesToShow("title", nodeOf("rx8k")));
    installRules();
    unplug("rx8k");
    plug("rx8k");
    ASSERT_TRUE(comesToShow("tiles", "1"));
    EXPECT_EQ(shown("title").find(nodeOf("rx8k")), std::string::npos) << page();
    EXPECT_NE(shown("title").find(nodeOf("rx4k")), std::string::npos) << page(); // still as it was plugged in
    EXPECT_NE(shown("text").find("not yet in effect"), std::string::npos) << page();
}
