// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PermissionHint: the card below the tiles that says which devices are attached but kept from this user, what
// is missing, and the command that puts it right. It watches the nodes' folder for a right that comes without
// the device being plugged in anew. Main thread.
#pragma once

#include <QFileSystemWatcher>
#include <QFrame>
#include <memory>

namespace Ui
{
class PermissionHint;
}

class PermissionHint : public QFrame
{
    Q_OBJECT

public:
    explicit PermissionHint(QWidget *parent = nullptr);
    ~PermissionHint() override;

    // The nodes that refuse this user; without any the card goes.
    void setNodes(const QStringList &refused);
    bool isNeeded() const { return !nodes_.isEmpty(); }
    void setLanguage(int index);

signals:
    // One of the nodes no longer refuses. Once for each setNodes().
    void rightsChanged();

private:
    void applyStyle();
    void copyCommand();
    void look();
    void writeTexts();

    std::unique_ptr<Ui::PermissionHint> ui;
    QFileSystemWatcher watcher_;
    QStringList nodes_;
    int language_ = 0;
    bool told_ = false;
};
