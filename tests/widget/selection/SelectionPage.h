// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SelectionPage: the selection page on the scripted layer, with what its tests ask of it. The devices are
// those of a catalogue of three models.
#pragma once

#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "selection/DialogChange.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QStackedWidget>
#include <QToolButton>

class SelectionPage : public QObject
{
protected:
    std::unique_ptr<DialogChange> page;
    FakeHidUsb &fake = FakeHidUsb::instance();

    template <typename Widget> Widget *child(const QString &name) const
    {
        auto *found = page->findChild<Widget *>(name);
        if (!found)
            qFatal("no %s", qPrintable(name));
        return found;
    }
    QToolButton *tile(int index) const { return child<QToolButton>(QString("btn%1").arg(index)); }
    const std::vector<DeviceAllInfo> &attached() const { return page->attached().tiles(); }
    QStackedWidget *stack() const { return child<QStackedWidget>("stackedWidget"); }
    int tileCount() const
    {
        int count = 0;
        while (page->findChild<QToolButton *>(QString("btn%1").arg(count)))
            ++count;
        return count;
    }
    bool shows(const QString &name) const { return !child<QWidget>(name)->isHidden(); }
    QString arrows() const
    {
        return QString(shows("LeftButton") ? "<" : "-") + (shows("RightButton") ? ">" : "-");
    }

    // Where a notice of that size stands in the middle of the page.
    QPoint middleFor(const QWidget &notice) const
    {
        const QSize room = page->size() - notice.size();
        return page->mapToGlobal(QPoint(room.width() / 2, room.height() / 2));
    }

    void build()
    {
        page = std::make_unique<DialogChange>();
        page->show();
        settle();
    }
    // All that the layer's threads have brought has reached the page.
    void settle()
    {
        QTRY_VERIFY(fake.idle());
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    void plug(std::vector<FakeDevice> devices)
    {
        fake.setDevices(std::move(devices));
        fake.changeUsb();
        settle();
    }
    // Devices that can stand beside each other in a catalogue of three models.
    static std::vector<FakeDevice> devices(int count)
    {
        std::vector<FakeDevice> made;
        for (int i = 0; i < count; ++i)
            made.push_back(i < 2 ? fixture::device("a" + std::to_string(i), uint8_t(6 + i), Receiver1K)
                                 : fixture::device("b" + std::to_string(i), uint8_t(6 + i % 3), Receiver8K));
        return made;
    }
    static QStringList names(const QSignalSpy &spy)
    {
        QStringList all;
        for (const QList<QVariant> &call : spy)
            all << call.value(0).toString();
        return all;
    }

    // Before and behind each test.
    void begin()
    {
        fixture::clean();
        RegistryStore::instance().removeValue(registry::BaseGroup, registry::UpdateFailInfo);
        RegistryStore::instance().removeValue(registry::BaseGroup, "MouseVer186");
        UiArmed = true;
    }
    void end()
    {
        page.reset();
        QDir(applicationFolder() + "/bin").removeRecursively();
    }
};
