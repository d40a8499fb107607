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

// The window systems number keys from 8, where the kernel numbers them from 0.
constexpr int ScanCodeOffset = 8;
// A repeating key goes up and down at the same time. Where the toolkit has not seen the press yet, it takes
// the release for a real one; so that of a key that may repeat waits for its press. Milliseconds.
constexpr ulong SoonestRepeat = 100;
constexpr int PressPatience = 5;

constexpr int LeftAlt = 0xA4;
constexpr int RightAlt = 0xA5;

bool isAlt(int virtualKey) { return virtualKey == LeftAlt || virtualKey == RightAlt; }

// The right Alt of many layouts chooses a third character, and is no Alt to the toolkit.
bool comesWithAlt(const QKeyEvent &event)
{
    return event.modifiers() & (Qt::AltModifier | Qt::GroupSwitchModifier);
}

} // namespace

KeySource::KeySource(AltKeys keys, QObject *parent) : QObject(parent), altKeys(keys)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *window) {
        if (!window)
            releaseAll();
    });
    patience.setSingleShot(true);
    patience.setTimerType(Qt::PreciseTimer);
    patience.setInterval(PressPatience);
    connect(&patience, &QTimer::timeout, this, &KeySource::finishDoubtful);
}

KeySource::~KeySource() { stop(); }

void KeySource::start()
{
    if (running)
        return;
    running = true;
    held.clear();
    offered = {};
    doubtful.reset();
    lastKey = 0;
    repeats = down = false;
    qGuiApp->installEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeySource::stop()
{
    if (!running)
        return;
    running = false;
    patience.stop();
    qGuiApp->removeEventFilter(this);
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

// Each key comes to the window first and then to its widgets, one after the other.
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
    offered = {event.nativeScanCode(), event.timestamp()};
}

void KeySource::take(const QKeyEvent &event)
{
    const quint32 scanCode = event.nativeScanCode();
    const bool isUp = event.type() == QEvent::KeyRelease;
    const bool isTaken = event.type() == QEvent::KeyPress && scanCode == offered.scanCode &&
                         event.timestamp() == offered.timestamp;
    offered = {};
    // A key that repeats goes up in between only where the window system says so.
    if (isTaken || scanCode <= ScanCodeOffset || (isUp && event.isAutoRepeat()))
        return;
    if (doubtful && !isUp && doubtful->scanCode == scanCode && doubtful->timestamp == event.timestamp())
        doubtful.reset();
    finishDoubtful();
    if (!running)
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
    if (find(scanCode) == held.end())
        held.push_back({scanCode, virtualKey, event.timestamp()});
    report(virtualKey, isAlt(virtualKey) || comesWithAlt(event) ? Message::AltDown : Message::Down);
}

void KeySource::takeRelease(const Release &release)
{
    const auto key = find(release.scanCode);
    if (key == held.end())
        return;
    if (release.timestamp - key->since < SoonestRepeat)
        return finish(release);
    doubtful = release;
    patience.start();
}

void KeySource::finishDoubtful()
{
    patience.stop();
    if (const auto release = std::exchange(doubtful, std::nullopt))
        finish(*release);
}

void KeySource::finish(const Release &release)
{
    const auto key = find(release.scanCode);
    if (key == held.end())
        return;
    const int virtualKey = key->virtualKey;
    held.erase(key);
    report(virtualKey, isAlt(virtualKey) || release.withAlt ? Message::AltUp : Message::Up);
}

void KeySource::releaseAll()
{
    while (running && !held.empty()) {
        const int key = held.back().virtualKey;
        held.pop_back();
        report(key, isAlt(key) ? Message::AltUp : Message::Up);
    }
}

std::vector<KeySource::HeldKey>::iterator KeySource::find(quint32 scanCode)
{
    return std::find_if(held.begin(), held.end(),
                        [=](const HeldKey &each) { return each.scanCode == scanCode; });
}

// The release of an Alt leaves the last key as it is, so that the next press of it counts as a repeat.
void KeySource::report(int virtualKey, Message message)
{
    repeats = virtualKey == lastKey;
    lastKey = virtualKey;
    const bool isPlain = message == Message::Down || message == Message::Up;
    if (isPlain || altKeys == AltKeys::Known)
        down = message == Message::Down || message == Message::AltDown;
    if (message == Message::Up) {
        repeats = false;
        lastKey = 0;
    }
    emit keyEvent(virtualKey, down, repeats);
}
