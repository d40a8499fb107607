// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Preloaded into the program: what the selection page shows, as a line in the file that PAGE_LOG names, each
// time that it is something else; and a picture of each beside that file.
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTimer>
#include <QToolButton>

namespace
{

QString shown(const QWidget *page, const char *name)
{
    const auto *widget = page->findChild<QWidget *>(QLatin1String(name));
    if (!widget || !widget->isVisible())
        return {};
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    const auto *lines = qobject_cast<const QPlainTextEdit *>(widget);
    return lines ? lines->toPlainText().replace(QLatin1Char('\n'), QLatin1Char(' ')) : QString();
}

QString describe(const QWidget *page)
{
    int tiles = 0;
    for (const auto *button :
         page->findChildren<QToolButton *>(QRegularExpression(QStringLiteral("^btn\\d+$"))))
        tiles += button->isVisible();
    return QStringLiteral("tiles=%1\ttitle=%2\ttext=%3\tcommand=%4\tprompt=%5")
        .arg(tiles)
        .arg(shown(page, "hintTitle"), shown(page, "hintText"), shown(page, "hintCommand"),
             shown(page, "label_2"));
}

void look(const QString &log)
{
    static QString last;
    static int pictures = 0;
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        const auto *page = window->findChild<QWidget *>(QStringLiteral("DialogChange"));
        if (!page || !page->isVisible())
            continue;
        const QString now = describe(page);
        QFile file(log);
        if (now == last || !file.open(QIODevice::WriteOnly | QIODevice::Append))
            continue;
        window->grab().save(QStringLiteral("%1-%2.png").arg(log).arg(++pictures));
        file.write(now.toUtf8() + '\n');
        last = now;
    }
}

void watch()
{
    const QString log = qEnvironmentVariable("PAGE_LOG");
    if (log.isEmpty())
        return;
    auto *const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [log] { look(log); });
    timer->start(50);
}
Q_COREAPP_STARTUP_FUNCTION(watch)

} // namespace
