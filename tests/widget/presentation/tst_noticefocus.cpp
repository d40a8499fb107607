// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// On a real X server: a notice, which no window manager looks after, takes the keyboard, keeps it when the
// window behind is activated, and gives it back. A server that doesn't answer holds up no motion.
#include "presentation/Motion.h"
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QScopeGuard>
#include <QWindow>
#include <arpa/inet.h>
#include <condition_variable>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace
{

// Takes a connection and says nothing. After `patience` it hangs up, so that who waits for it fails.
class SilentServer
{
public:
    SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const name = reinterpret_cast<sockaddr *>(&address);
        if (bind(socket_, name, size) != 0 || listen(socket_, 1) != 0 ||
            getsockname(socket_, name, &size) != 0)
            return;
        display_ = "127.0.0.1:" + QByteArray::number(ntohs(address.sin_port) - 6000);
        hangsUp_ = std::thread([this] {
            const int client = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
            std::unique_lock lock(mutex_);
            called_ = true;
            gaveUp_ = !changed_.wait_for(lock, patience, [this] { return released_; });
            close(client);
        });
    }
    ~SilentServer()
    {
        release();
        shutdown(socket_, SHUT_RDWR);
        if (hangsUp_.joinable())
            hangsUp_.join();
        close(socket_);
    }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

    QByteArray display() const { return display_; }
    bool isCalled() const
    {
        const std::lock_guard lock(mutex_);
        return called_;
    }
    bool hasGivenUp() const
    {
        const std::lock_guard lock(mutex_);
        return gaveUp_;
    }
    void release()
    {
        const std::lock_guard lock(mutex_);
        released_ = true;
        changed_.notify_all();
    }

private:
    static constexpr std::chrono::seconds patience{10};
    int socket_;
    QByteArray display_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool called_ = false, released_ = false, gaveUp_ = false;
    std::thread hangsUp_;
};

} // namespace

class tst_NoticeFocus : public QObject
{
    Q_OBJECT

private slots:
    // First, since the server is asked once.
    void aSilentServerHoldsUpNoMotion()
    {
        const QTemporaryDir config; // says nothing of motion
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        SilentServer server;
        QVERIFY(!server.display().isEmpty());
        const QByteArray display = qgetenv("DISPLAY");
        qputenv("DISPLAY", server.display());
        const auto restored = qScopeGuard([&display] {
            qputenv("DISPLAY", display);
            qunsetenv("XDG_CONFIG_HOME");
        });
        QCOMPARE(motionTime(), 0);
        QVERIFY(!server.hasGivenUp());
        QTRY_VERIFY(server.isCalled());
        QCOMPARE(motionTime(), 0);
        server.release();
        QTRY_VERIFY(motionTime() > 0); // no settings manager, so nothing against it
    }

    void takesKeepsAndGivesBack()
    {
        QWidget ground;
        ground.resize(883, 630);
        ground.show();
        ground.activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), ground.windowHandle());

        QuestiondialogB notice;
        notice.placeOver(&ground);
        notice.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), notice.windowHandle());

        ground.activateWindow();
        ground.raise();
        QTRY_COMPARE(QGuiApplication::focusWindow(), notice.windowHandle());

        QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Escape);
        QVERIFY(!notice.isVisible());
        QTRY_COMPARE(QGuiApplication::focusWindow(), ground.windowHandle());
    }

    void theSecondStandsOnTheFirst()
    {
        QWidget ground;
        ground.resize(883, 630);
        ground.show();
        MouseOffLine first;
        first.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), first.windowHandle());
        QuestiondialogB second;
        second.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), second.windowHandle());
        second.close();
        QTRY_COMPARE(QGuiApplication::focusWindow(), first.windowHandle());
    }
};

TEST_CLASS(tst_NoticeFocus, fixture::ShippedLooks)

#include "tst_noticefocus.moc"
