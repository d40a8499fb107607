// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// AccessibleBus: what a screen reader gets of this program over the accessibility bus of the session: its
// tree of accessible objects, and its events. The session has to be the test's own (dbus-run-session). The
// program answers in its event loop, so questions run on a thread of their own while the main thread runs
// that loop. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVector>
#include <atomic>
#include <functional>
#include <thread>

// One object as a screen reader meets it.
struct HeardObject {
    QString window; // the name of the window that it belongs to
    QString name;   // that of its label, else its own
    QString role;   // "push button", "radio button", …
    QString path;   // on the bus
    QString value;  // the number or text that it holds, or its own name beside that of its label
    bool focusable = false;
    bool focused = false;
};

class AccessibleBus : public QObject
{
    Q_OBJECT

public:
    AccessibleBus();
    ~AccessibleBus() override;

    // Waits for the program to join the bus; isDone() tells when that is over, isThere() whether it has.
    void findProgram();
    bool isThere() const { return !program_.isEmpty(); }
    // Collects every object that shows, from the windows down; isDone() tells when.
    void walk();
    bool isDone() const { return done_; }
    const QVector<HeardObject> &heard() const { return heard_; }

    // Sets the number of the control that was heard under this name; isDone() tells when.
    void setValue(const QString &name, double value);
    // The same with the text of a field.
    void setText(const QString &name, const QString &text);
    // Chooses the item of a list that was heard under this name.
    void chooseItem(const QString &name);

    // Of each event since the last call: what changed, to what, and the object's role and name, such as
    // "checked 1 radio button: 500 Hz". A load brings thousands, and each question takes its time, so only
    // those of the wanted one's kind are asked about. Asks like walk().
    void askEvents(const QString &wanted);
    const QStringList &events() const { return told_; }

private slots:
    void take(const QDBusMessage &event);

private:
    void start(const std::function<void()> &question);
    void stop(); // the question that a failed test has left
    QDBusMessage call(const QString &service, const QString &path, const char *interface, const char *method,
                      const QVariantList &arguments = {}) const;
    QVariant property(const QString &path, const char *interface, const char *name) const;
    QString nameOf(const QString &path) const;
    QString roleOf(const QString &path) const;
    // Of the last one that was heard under this name. Without a role it is one that holds a value.
    QString pathOf(const QString &name, const char *role = nullptr) const;
    void visit(const QString &path, const QString &window);
    HeardObject describe(const QString &path, quint32 states) const;

    struct Event {
        QString what;
        QString path;
    };

    QDBusConnection bus_;
    QString program_; // its name on that bus
    std::thread asking_;
    std::atomic<bool> done_{true};
    std::atomic<bool> stopped_{false};
    QVector<HeardObject> heard_;
    QVector<Event> events_;
    QStringList told_;
};
