// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of upgrade and repair share: a mouse of model 6 on its cable and its 8 kHz receiver on the
// scripted layer, and a folder with firmware for both.
#pragma once

#include "catalogue/RegistryStore.h"
#include "service/UpDateRepair.h"
#include "service/UpdateFailRecord.h"
#include "service/UpgradeState.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
#include <QProgressBar>
#include <QSemaphore>
#include <QThread>
#include <QToolButton>
#include <atomic>
#include <memory>

namespace fixture
{

constexpr char MouseFailed[] = "210,8,18,6";
constexpr char ReceiverFailed[] = "211,8,18,6";

inline QByteArray upgradeCatalogue()
{
    QByteArray text = smallCatalogue();
    const auto code = ProductFolder::code;
    text.replace("[Drive1]\n", "[Drive1]\nMM=" + code("M6_Mouse") + "\nD8M=" + code("M6_Receiver8K") + "\n");
    return text;
}

struct UpgradeLooks : ShippedLooks {
    UpgradeLooks(int &argc, char **argv) : ShippedLooks(argc, argv, upgradeCatalogue()) {}
};

inline const char MousePath[] = "mouse";
inline const char ReceiverPath[] = "receiver";

inline DeviceAllInfo mouseInfo() { return info(MousePath, Cable8K); }
inline DeviceAllInfo receiverInfo() { return info(ReceiverPath, Receiver8K); }

// Both attached, neither in its boot loader, files for both, no record.
inline void beginUpgrade()
{
    clean();
    FakeHidUsb &fake = FakeHidUsb::instance();
    fake.addDevice(device(MousePath, 6, Cable8K));
    fake.addDevice(device(ReceiverPath, 6, Receiver8K));
    fake.edit(ReceiverPath, [](FakeDevice &receiver) {
        receiver.receiverVersion = 0x0102;
        receiver.address[0] = 7;
    });
    fake.setUpgrade(0, true);
    select(mouseInfo());
    setDeviceList({mouseInfo(), receiverInfo()});
    firmware::clear();
    firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
    firmware::write(QStringLiteral("receiver.bin"), firmware::Receiver);
    UpdateFailRecord::remove();
}

inline QString told(UpgradeText text) { return upgradeText(text, LanguageIndex); }

// The dialog's widgets.
struct DialogParts {
    explicit DialogParts(UpDateRepair &dialog)
        : message(dialog.findChild<QLabel *>(QStringLiteral("ToolText_2")))
        , main(dialog.findChild<QToolButton *>(QStringLiteral("NewHong_2")))
        , cancel(dialog.findChild<QToolButton *>(QStringLiteral("NewHong")))
        , close(dialog.findChild<QToolButton *>(QStringLiteral("CloseButton")))
        , bar(dialog.findChild<QProgressBar *>(QStringLiteral("progressBar_2")))
        , percent(dialog.findChild<QLabel *>(QStringLiteral("percent")))
        , offer(dialog.findChild<QLabel *>(QStringLiteral("offer")))
    {
    }
    bool says(UpgradeText text) const { return message->text() == told(text); }
    bool mainSays(const char *key, language::Section section = language::Section::common) const
    {
        return main->text() == language::text(section, key, LanguageIndex);
    }
    bool offersStart() const { return mainSays("DialogUpgradeStart", language::Section::update); }
    // A text and a button that leads out.
    bool hasWayOut() const
    {
        return !message->text().isEmpty() && !main->isHidden() && main->isEnabled() && close->isEnabled();
    }

    QLabel *message;
    QToolButton *main;
    QToolButton *cancel;
    QToolButton *close;
    QProgressBar *bar;
    QLabel *percent;
    QLabel *offer; // the versions that a start would write
};

// What stands below the bar: `target` is the key of the version's name on the settings page.
inline QString targetProgress(const char *target, int percent)
{
    return language::text(language::Section::update, "UpgradeProgress", LanguageIndex)
        .arg(language::text(language::Section::Settings, target, LanguageIndex))
        .arg(percent);
}

// The questions to devices that the main thread waited for, while it lives.
class MainThreadQuestions
{
public:
    MainThreadQuestions()
    {
        FakeHidUsb::instance().setHook([asked = asked_](const std::string &name) {
            const bool asks = name == "UsbUpgradeC_FindBootDevices" || name == "UsbFinderC_GetSlaveVersion" ||
                              name == "UsbFinderC_GetDeviceInfo";
            if (asks)
                ++(QThread::currentThread() == qApp->thread() ? asked->here : asked->elsewhere);
        });
    }
    ~MainThreadQuestions() { FakeHidUsb::instance().setHook({}); }
    bool none() const { return asked_->here == 0 && asked_->elsewhere > 0; }

private:
    struct Asked {
        std::atomic<int> here{0};
        std::atomic<int> elsewhere{0};
    };
    const std::shared_ptr<Asked> asked_ = std::make_shared<Asked>(); // a question may outlive this object
};

// Boot loaders answer when this is told to let them, at the latest at its end.
class SlowBootLoaders
{
    // A question may outlive this object.
    struct Shared {
        QSemaphore asked;
        QSemaphore mayAnswer;
        std::atomic<int> ended{0}; // threads that have asked
    };
    // Of a thread that asks; ends with it, behind its answer.
    struct Asking {
        ~Asking()
        {
            if (shared)
                ++shared->ended;
        }
        std::shared_ptr<Shared> shared;
    };
    const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();

public:
    SlowBootLoaders()
    {
        FakeHidUsb::instance().setHook([shared = shared_](const std::string &name) {
            if (name == "UsbUpgradeC_FindBootDevices") {
                thread_local Asking asking;
                asking.shared = shared;
                shared->asked.release();
                shared->mayAnswer.acquire();
                shared->mayAnswer.release();
            }
        });
    }
    ~SlowBootLoaders()
    {
        answer();
        FakeHidUsb::instance().setHook({});
    }
    void answer() { shared_->mayAnswer.release(); }
    // Until the answers of so many questions since the beginning have come to the main thread, also those
    // that are dropped there.
    void waitForAnswers(int questions)
    {
        answer();
        QTRY_COMPARE(int(shared_->ended), questions);
        QCoreApplication::processEvents();
        shared_->mayAnswer.acquire();
    }

    QSemaphore &asked = shared_->asked;
};

inline int starts() { return FakeHidUsb::instance().count("UsbUpgrade_Start"); }
inline void report(uint8_t what, uint8_t value) { FakeHidUsb::instance().upgradeReport({7, what, value}); }
inline void progress(uint8_t percent) { report(1, percent); }
inline void succeed() { report(2, 1); }
inline void fail() { report(2, 0); }

} // namespace fixture
