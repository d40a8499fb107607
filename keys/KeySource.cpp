// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "keys/KeySource.h"

#include "keys/KeyTable.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace
{

// Scan codes of the window systems are the kernel's numbers + 8.
constexpr int ScanCodeOffset = 8;
// A repeating key sends a release and a press with one timestamp. When the press is not in the queue yet, the
// toolkit reports the release as a real one, so the release of a key that may repeat waits for its press.
// Milliseconds.
constexpr quint32 SoonestRepeat = 100;
constexpr int PressPatience = 30; // a busy machine brings the press late

constexpr int LeftAlt = 0xA4;
constexpr int RightAlt = 0xA5;

bool isAlt(int virtualKey) { return virtualKey == LeftAlt || virtualKey == RightAlt; }

// In many layouts the right Alt is a level shift, which the toolkit does not report as Alt.
bool comesWithAlt(const QKeyEvent &event)
{
    return event.modifiers() & (Qt::AltModifier | Qt::GroupSwitchModifier);
}

} // namespace

KeySource::KeySource(AltKeys keys, QObject *parent) : QObject(parent), altKeys_(keys)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *window) {
        if (!window)
            releaseAll();
    });
    patience_.setSingleShot(true);
    patience_.setTimerType(Qt::PreciseTimer);
    patience_.setInterval(PressPatience);
    connect(&patience_, &QTimer::timeout, this, &KeySource::finishDoubtful);
}

KeySource::~KeySource() { stop(); }

void KeySource::start()
{
    if (running_)
        return;
    running_ = true;
    held_.clear();
    offered_ = {};
    doubtful_.reset();
    lastKey_ = 0;
    repeats_ = down_ = false;
    lastTimestamp_.reset();
    time_ = timed_ = 0;
    clock_.start();
    qGuiApp->installEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeySource::stop()
{
    if (!running_)
        return;
    running_ = false;
    patience_.stop();
    qGuiApp->removeEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

// A key event reaches the window first and then its widgets; only the window's is taken.
bool KeySource::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::InputMethodQuery) {
        auto *query = static_cast<QInputMethodQueryEvent *>(event);
        if (query->queries() != Qt::ImEnabled)
            return false;
        query->setValue(Qt::ImEnabled, false);
        query->accept();
        return true;
    }
    if (!watched->isWindowType())
        return false;
    if (event->type() == QEvent::ShortcutOverride)
        offer(*static_cast<QKeyEvent *>(event));
    else if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
        take(*static_cast<QKeyEvent *>(event));
    return false;
}

void KeySource::offer(const QKeyEvent &event)
{
    take(event);
    offered_ = {event.nativeScanCode(), event.timestamp()};
}

void KeySource::take(const QKeyEvent &event)
{
    const quint32 scanCode = event.nativeScanCode();
    const bool isUp = event.type() == QEvent::KeyRelease;
    const bool isTaken = event.type() == QEvent::KeyPress && scanCode == offered_.scanCode &&
                         event.timestamp() == offered_.timestamp;
    offered_ = {};
    // Releases within a repeat are dropped.
    if (isTaken || scanCode <= ScanCodeOffset || (isUp && event.isAutoRepeat()))
        return;
    if (doubtful_ && !isUp && doubtful_->scanCode == scanCode && doubtful_->timestamp == event.timestamp())
        doubtful_.reset();
    finishDoubtful();
    if (!running_)
        return;
    if (isUp)
        takeRelease({scanCode, comesWithAlt(event), event.timestamp()});
    else
        takePress(event);
}

void KeySource::takePress(const QKeyEvent &event)
{
    const quint32 scanCode = event.nativeScanCode();
    const int virtualKey = VirtualKeyFromEvdev(int(scanCode) - ScanCodeOffset);
    if (find(scanCode) == held_.end())
        held_.push_back({scanCode, virtualKey, event.timestamp()});
    report(virtualKey, isAlt(virtualKey) || comesWithAlt(event) ? Message::AltDown : Message::Down,
           event.timestamp());
}

void KeySource::takeRelease(const Release &release)
{
    const auto key = find(release.scanCode);
    if (key == held_.end())
        return;
    if (quint32(release.timestamp) - quint32(key->since) < SoonestRepeat)
        return finish(release);
    doubtful_ = release;
    patience_.start();
}

void KeySource::finishDoubtful()
{
    patience_.stop();
    if (const auto release = std::exchange(doubtful_, std::nullopt))
        finish(*release);
}

void KeySource::finish(const Release &release)
{
    const auto key = find(release.scanCode);
    if (key == held_.end())
        return;
    const int virtualKey = key->virtualKey;
    held_.erase(key);
    report(virtualKey, isAlt(virtualKey) || release.withAlt ? Message::AltUp : Message::Up,
           release.timestamp);
}

void KeySource::releaseAll()
{
    while (running_ && !held_.empty()) {
        const int key = held_.back().virtualKey;
        held_.pop_back();
        report(key, isAlt(key) ? Message::AltUp : Message::Up, 0);
    }
}

std::vector<KeySource::HeldKey>::iterator KeySource::find(quint32 scanCode)
{
    return std::find_if(held_.begin(), held_.end(),
                        [=](const HeldKey &each) { return each.scanCode == scanCode; });
}

// The release of an Alt does not clear lastKey_, so the next press of that Alt is reported as a repeat.
void KeySource::report(int virtualKey, Message message, ulong timestamp)
{
    setTime(timestamp);
    repeats_ = virtualKey == lastKey_;
    lastKey_ = virtualKey;
    const bool isPlain = message == Message::Down || message == Message::Up;
    if (isPlain || altKeys_ == AltKeys::Known)
        down_ = message == Message::Down || message == Message::AltDown;
    if (message == Message::Up) {
        repeats_ = false;
        lastKey_ = 0;
    }
    const bool nested = std::exchange(reporting_, true);
    emit keyEvent(virtualKey, down_, repeats_);
    reporting_ = nested;
}

// A timestamp counts from a moment that only the window system knows, in 32 bits, so only the difference of
// two means anything. An event without one happened now.
void KeySource::setTime(ulong timestamp)
{
    const qint64 now = clock_.elapsed();
    const auto between = [this, timestamp] { return qint32(quint32(timestamp) - quint32(*lastTimestamp_)); };
    const bool known = timestamp != 0 && lastTimestamp_ && between() >= 0;
    time_ += known ? between() : now - timed_;
    timed_ = now;
    lastTimestamp_ = timestamp != 0 ? std::optional<ulong>(timestamp) : std::nullopt;
}

qint64 KeySource::time() const { return reporting_ ? time_ : time_ + clock_.elapsed() - timed_; }
