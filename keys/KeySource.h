// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// KeySource: every key that goes down or up while a window of the program has the keyboard, as a virtual
// key. It goes by the physical key, so the layout does not matter and left and right modifiers are distinct.
// The window receives the keys as well. While a source runs input methods are off, since they would consume
// dead keys. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <optional>
#include <vector>

class QKeyEvent;

class KeySource : public QObject
{
    Q_OBJECT

public:
    // Alt, and keys pressed with it, are separate messages. With Unknown they are reported with the state of
    // the last plain key.
    enum class AltKeys : uint8_t { Known, Unknown };

    explicit KeySource(AltKeys altKeys, QObject *parent = nullptr);
    ~KeySource() override;

    void start();
    void stop();
    bool isRunning() const { return running_; }
    // Reports a release that waits for the press of a repeat. To be called before stop() by whoever counts
    // releases.
    void settle() { finishDoubtful(); }

    // While keyEvent is emitted, the moment at which the key moved, as the window system has it, however late
    // the event is handled; otherwise now. Milliseconds since the start.
    qint64 time() const;

signals:
    // The virtual key, whether it is down, and whether it repeats.
    // A key that was down before the start is not reported when it goes up. Keys that are down when the
    // program loses the keyboard are reported as up, the last one first. A slot may stop the source, not
    // delete it.
    void keyEvent(int keyCode, bool downOrUp, bool aotu);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Message : uint8_t { Down, Up, AltDown, AltUp };
    struct Press {
        quint32 scanCode = 0;
        ulong timestamp = 0;
    };
    struct HeldKey {
        quint32 scanCode;
        int virtualKey;
        ulong since; // timestamp of its press
    };
    struct Release {
        quint32 scanCode;
        bool withAlt;
        ulong timestamp;
    };

    void offer(const QKeyEvent &event);
    void take(const QKeyEvent &event);
    void takePress(const QKeyEvent &event);
    void takeRelease(const Release &release);
    void finish(const Release &release);
    void finishDoubtful();
    void releaseAll();
    void report(int virtualKey, Message message, ulong timestamp);
    void setTime(ulong timestamp);
    std::vector<HeldKey>::iterator find(quint32 scanCode);

    const AltKeys altKeys_;
    bool running_ = false;
    std::vector<HeldKey> held_;
    Press offered_; // seen as a shortcut override; its press may follow or not
    std::optional<Release> doubtful_;
    QTimer patience_;
    int lastKey_ = 0;
    bool repeats_ = false;
    bool down_ = false;
    QElapsedTimer clock_;
    std::optional<ulong> lastTimestamp_;
    qint64 time_ = 0;  // of the last report
    qint64 timed_ = 0; // what clock_ showed then
    bool reporting_ = false;
};
