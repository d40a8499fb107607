// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/keysource/KeySource.h"

#include "binding/keys/KeyTable.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>

namespace
{

// The window systems number keys from 8, where the kernel numbers them from 0.
constexpr int ScanCodeOffset = 8;
constexpr int LeftAlt = 0xA4;
constexpr int RightAlt = 0xA5;

// The right Alt of many layouts chooses a third character, and is no Alt to the toolkit.
bool comesWithAlt(const QKeyEvent &event, int virtualKey)
{
    return virtualKey == LeftAlt || virtualKey == RightAlt ||
           (event.modifiers() & (Qt::AltModifier | Qt::GroupSwitchModifier));
}

} // namespace

KeySource::KeySource(AltKeys keys, QObject *parent) : QObject(parent), altKeys(keys)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *window) {
        if (!window)
            releaseAll();
    });
}

KeySource::~KeySource() { stop(); }

void KeySource::start()
{
    if (running)
        return;
    running = true;
    held.clear();
    offered = {};
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
    const HeldKey key = {scanCode, VirtualKeyFromEvdev(int(scanCode) - ScanCodeOffset)};
    const bool withAlt = comesWithAlt(event, key.virtualKey);
    if (isUp)
        release(key, withAlt);
    else
        press(key, withAlt);
}

void KeySource::press(const HeldKey &key, bool withAlt)
{
    const auto same = [&](const HeldKey &each) { return each.scanCode == key.scanCode; };
    if (std::none_of(held.begin(), held.end(), same))
        held.push_back(key);
    report(key.virtualKey, withAlt ? Message::AltDown : Message::Down);
}

void KeySource::release(const HeldKey &key, bool withAlt)
{
    const auto same = [&](const HeldKey &each) { return each.scanCode == key.scanCode; };
    const auto found = std::find_if(held.begin(), held.end(), same);
    if (found == held.end())
        return;
    held.erase(found);
    report(key.virtualKey, withAlt ? Message::AltUp : Message::Up);
}

void KeySource::releaseAll()
{
    while (running && !held.empty()) {
        const int key = held.back().virtualKey;
        held.pop_back();
        report(key, key == LeftAlt || key == RightAlt ? Message::AltUp : Message::Up);
    }
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
