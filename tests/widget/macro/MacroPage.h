// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MacroPage: the page of the macros in a window, over a data folder of the test's own.
#pragma once

#include "macro/Macro.h"
#include "macro/MacroDeviceSync.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/QuestionDialog.h"
#include "tests/unit/macro/MacroHome.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QRadioButton>
#include <QSpinBox>
#include <QToolButton>
#include <QWindow>

struct MacroSetUp : private MacroHome, fixture::ShippedLooks {
    MacroSetUp(int &argc, char **argv) : ShippedLooks(argc, argv) {}
};

class MacroPage
{
public:
    // `files`: name and content of the macros that there are.
    explicit MacroPage(const QVector<QPair<QString, QByteArray>> &files = {})
    {
        fixture::clean();
        for (const QString &folder : {macro::macroFolder(), macro::keptFolder()})
            QDir(folder).removeRecursively();
        makeDataFolders();
        for (const auto &[name, content] : files)
            MacroHome::write(macro::macroPath(name), content);
        page = std::make_unique<Macro>();
        emit PostMsg::instance()->SigAllLanguage(0);
        page->show();
        QApplication::setActiveWindow(page.get());
    }
    ~MacroPage()
    {
        for (const QString &name : names())
            macro::release(name);
    }

    template <typename Widget> Widget *find(const char *name) const
    {
        return page->findChild<Widget *>(name);
    }
    QToolButton *button(const char *name) const { return find<QToolButton>(name); }
    QListWidget *macros() const { return find<QListWidget>("listWidgetHong"); }
    QListWidget *events() const { return find<QListWidget>("listWidgetKey"); }
    QRadioButton *radio(const char *name) const { return find<QRadioButton>(name); }
    QSpinBox *number() const { return find<QSpinBox>("NumberEdit"); }

    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < macros()->count(); ++row)
            names << macros()->item(row)->text();
        return names;
    }
    // "+A" a press, "-A" a release, "10ms" a delay.
    QString rows() const
    {
        QStringList rows;
        for (int row = 0; row < events()->count(); ++row) {
            const QListWidgetItem *item = events()->item(row);
            const bool delay = item->text().contains("ms");
            rows << (delay ? "" : item->type() == 0 ? "+" : "-") + item->text();
        }
        return rows.join(' ');
    }
    QByteArray file(const QString &name) const { return MacroHome::read(macro::macroPath(name)); }
    QString selected() const
    {
        const auto items = macros()->selectedItems();
        return items.isEmpty() ? QString() : items.first()->text();
    }
    bool saves() const { return button("Save")->isEnabled(); }

    // A click of the mouse on the row.
    void click(QListWidget *list, int row, Qt::MouseButton with = Qt::LeftButton) const
    {
        list->scrollToItem(list->item(row));
        QTest::mouseClick(list->viewport(), with, {}, list->visualItemRect(list->item(row)).center());
    }
    void choose(const QString &name) const { click(macros(), names().indexOf(name)); }
    void select(int row) const
    {
        if (row < 0)
            events()->clearSelection();
        events()->setCurrentRow(row);
    }

    // Types into the next question for a name.
    void answerName(const QString &name) const
    {
        fixture::whenModal<QuestionDialog>([name](QuestionDialog *dialog) {
            QTest::keyClicks(dialog->findChild<QLineEdit *>("lineEdit"), name);
            dialog->findChild<QToolButton *>("OK")->click();
        });
    }

    // A key event as the window system sends it; the number is the kernel's.
    void key(int evdev, bool down, Qt::Key key = Qt::Key_A) const
    {
        const auto send = [&](QEvent::Type type) {
            QKeyEvent event(type, key, {}, quint32(evdev + 8), 0, 0, QStringLiteral("a"), false);
            event.setTimestamp(timestamp);
            QCoreApplication::sendEvent(page->window()->windowHandle(), &event);
        };
        send(down ? QEvent::KeyPress : QEvent::KeyRelease);
    }
    void record(int evdev, Qt::Key qtKey = Qt::Key_A, int pause = 10) const
    {
        timestamp += ulong(pause);
        key(evdev, true, qtKey);
        timestamp += ulong(pause);
        key(evdev, false, qtKey);
    }

    std::unique_ptr<Macro> page;
    mutable ulong timestamp = 1000;
};
