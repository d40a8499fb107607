// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DeviceHead: the two lines in the head of the device page that tell which page shows and which mouse it is
// for: its model, the profile in use and the link. A line that has no room ends in an ellipsis and tells the
// rest as its tool tip. Main thread.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <QWidget>

class QLabel;

class DeviceHead : public QWidget
{
    Q_OBJECT

public:
    explicit DeviceHead(QWidget *parent = nullptr);

    void setTitle(const QString &title);
    void setDevice(const DeviceAllInfo &info);
    void setLanguage(int index);

public slots:
    void setProfile(const QString &profile);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void describe();
    void fit();

    QLabel *title_;
    QLabel *line_;
    DeviceAllInfo info_;
    QString profile_;
    QString text_; // of the second line, not shortened
    int language_ = 0;
};
