// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The least that a Qt program can show: a dialog with a label, and Qt's own defaults.
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QDialog dialog;
    QVBoxLayout layout(&dialog);
    QLabel label(QStringLiteral("One label is all that this window holds"));
    layout.addWidget(&label);
    dialog.show();
    return QApplication::exec();
}
