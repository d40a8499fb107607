// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpDataParam: the wait dialog during a load, an import or a reset. When its timer runs out,
// onTimeupDestroy() waits for the pages and decides whether the load succeeded; otherwise it shows the cached
// image or raises the off-line notice. Main thread.
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
    // Marks the load as a refresh of pages that show a record already. Permanent.
    void setRefreshing() { Refreshing_ = true; }
    // The next time-out imports this image file.
    void setImport(const QString &path);

public slots:
    void onTimeupDestroy();

protected:
    const char *textKey() const override;

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
