// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The list of reports, newest last, limited to the latest ones. Reports that arrive in quick succession are
// added together. While paused it only counts.
#pragma once

#include <QAbstractListModel>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

class ReportModel : public QAbstractListModel
{
    Q_OBJECT

public:
    static constexpr int Limit = 2000;

    explicit ReportModel(QObject *parent = nullptr);

    void append(const QByteArray &line);
    void clear();
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    void flush();

    QStringList lines_;
    QStringList waiting_;
    QTimer flush_;
};

class ReportList : public QWidget
{
    Q_OBJECT

public:
    explicit ReportList(QWidget *parent = nullptr);

    void append(const QByteArray &line);

private:
    void setPaused(bool paused);
    void showCount();

    ReportModel *const model_;
    QListView *const list_;
    QPushButton *const pause_;
    QPushButton *const clear_;
    QLabel *const count_;
    int passed_ = 0; // while paused
    bool atEnd_ = true;
};
