// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpDataParam: the wait that stands over a load, an import or a reset. Its end decides whether the load
// worked: the timer runs out once, then onTimeupDestroy() gives the pages their time, and the cache or the
// off-line notice takes over when they were not fed. Main thread.
#pragma once

#include "presentation/NoticeDialog.h"

#include <QTimer>

class UpDataParam : public NoticeDialog
{
    Q_OBJECT

public:
    UpDataParam();

    // Starts the timer of 2,500 ms.
    void startTimer();
    // From now on the load is a refresh of what the pages show already. Never taken back.
    void setRefreshing() { Refreshing_ = true; }
    // The next end takes this image file for the device.
    void setImport(const QString &path);

public slots:
    void onTimeupDestroy();

private:
    bool waitForPages();
    void endRefresh();
    void endImport();
    void endLoad();
    void endLoss();

    QString importPath_;
    bool Importing_ = false;
    bool Refreshing_ = false;
    QTimer timer_;
};
