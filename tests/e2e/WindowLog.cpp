// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Preloaded into the program: a line with the class of each window that comes up, in the file that
// WINDOW_LOG names. A modal dialog is closed once it is noted; the main window's own button is pressed as
// soon as a file of that name with ".close" behind it exists.
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QSet>
#include <QTimer>

namespace
{

void note(const QString &log, const QByteArray &name)
{
    QFile file(log);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(name + '\n');
}

void look(const QString &log)
{
    static QSet<QByteArray> seen;
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        const QByteArray name = window->metaObject()->className();
        if (!window->isVisible() || seen.contains(name))
            continue;
        seen.insert(name);
        note(log, name);
    }
    if (QWidget *const modal = QApplication::activeModalWidget())
        modal->close();
    if (!QFile::exists(log + QStringLiteral(".close")))
        return;
    for (QWidget *const window : QApplication::topLevelWidgets())
        for (auto *const button : window->findChildren<QAbstractButton *>(QStringLiteral("CloseButton")))
            if (button->isVisible())
                button->click();
}

void watch()
{
    const QString log = qEnvironmentVariable("WINDOW_LOG");
    if (log.isEmpty())
        return;
    auto *const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [log] { look(log); });
    timer->start(20);
}
Q_COREAPP_STARTUP_FUNCTION(watch)

} // namespace
