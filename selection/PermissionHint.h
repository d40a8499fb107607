// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PermissionHint: the card below the tiles that names the attached devices that this user may not open, what
// is missing, and the command that adds it. It watches the nodes' folder, since permission may be granted
// without the device being plugged in again. Main thread.
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

    // The nodes that refuse this user; an empty list hides the card.
    void setNodes(const QStringList &refused);
    bool isNeeded() const { return !nodes_.isEmpty(); }
    void setLanguage(int index);

signals:
    // One of the nodes no longer refuses. Emitted once for each setNodes().
    void permissionGranted();

private:
    void build();
    void applyStyle();
    void copyCommand();
    void checkNodes();
    void writeTexts();

    std::unique_ptr<Ui::PermissionHint> ui; // from the first refusal on
    QFileSystemWatcher watcher_;
    QStringList nodes_;
    QString command_; // in one line
    int language_ = 0;
    bool announced_ = false;
};
