// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of macros on the binding page share: the record that the mouse must have, and macros that
// its buttons play.
#pragma once

#include "macro/MacroDeviceSync.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroBlockCodec.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

inline macro::MacroRows presses(int count)
{
    macro::MacroRows rows;
    for (int i = 0; i < count; ++i) {
        rows << macro::keyRow("A", i % 2 == 0);
        if (i + 1 < count)
            rows << macro::delayRow(quint32(i));
    }
    return rows;
}

inline QByteArray bytesOf(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record);
}

inline QByteArray fileOf(const QString &name)
{
    QFile file(macro::macroPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

inline QStringList kept() { return QDir(macro::keptFolder()).entryList(QDir::Files, QDir::Name); }

class ButtonMacrosTest : public ButtonPageTest
{
protected:
    // The page of the macros, as far as this one needs it.
    QObject macroPage;
    FlashDataMap wanted;

    static std::size_t updates() { return FakeHidUsb::instance().updates().size(); }
    void bind(int row, const char *name)
    {
        page().click(ButtonPageRows[row].caption);
        page().click("DPI_10");
        page().macro(name)->click();
    }
    QString caption(int row) { return page().button(ButtonPageRows[row].caption)->text(); }
    bool isWanted() const { return bytesOf(DeviceRecord::copy()) == bytesOf(wanted); }
    void expectMacro(int button, const char *name, uint8_t cycle, const macro::MacroRows &rows)
    {
        wanted.KeyBindings[button] = {6, uint8_t(button), cycle};
        wanted.MacroBlocks[button] = macro::boundBlock(name, rows);
    }
    // A record in which every button but the first two plays that macro.
    void bindAll(const char *name)
    {
        macro::saveMacro(name, 254, presses(3));
        for (int button = 2; button < 12; ++button)
            expectMacro(button, name, 254, presses(3));
        page().show(wanted);
    }

    void begin()
    {
        ButtonPageTest::begin();
        QObject::connect(
            PostMsg::instance(), &PostMsg::SigButtonToMacro, &macroPage,
            [](const FlashDataMap &record, int button) { macro::takeFromMouse(record, button); });
        QObject::connect(PostMsg::instance(), &PostMsg::SigMacroDownLoadData, &macroPage, macro::sendSaved);
        wanted = ButtonPage::plainRecord();
        page().show(wanted);
    }
    void end()
    {
        PostMsg::instance()->disconnect(&macroPage);
        for (int button = 0; button < 12; ++button)
            macro::dropMissedName(button);
        macro::dropMarks("Burst");
        ButtonPageTest::end();
    }
};
