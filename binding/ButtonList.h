// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ButtonList: the rows of the mouse's buttons, each a number and a caption that says what the button does,
// and the marks on the picture that stand for them. A mark shows whether its row is the chosen one. Made in
// widgets of the page, which owns them. Main thread.
#pragma once

#include "binding/ButtonTable.h"

#include <QObject>

class ActionButton;
class QAbstractButton;
class QButtonGroup;
class QLabel;
class QScrollArea;
class QToolButton;
class QWidget;

class ButtonList : public QObject
{
    Q_OBJECT

public:
    // Rows go into the scroll area, marks onto the picture.
    ButtonList(QScrollArea *area, QWidget *picture);

    void applyStyle(const QString &folder);

    ActionButton *caption(std::size_t row) const { return rows_[row].caption; }
    QToolButton *marker(std::size_t row) const { return rows_[row].marker; }
    static std::size_t rowOf(int button); // of a button 0..11

    QString text(int button) const;
    void setText(int button, const QString &text);

    int checkedRow() const; // -1 for none
    void check(std::size_t row);
    void uncheckAll();
    void scrollTo(std::size_t row);

    // Places the marks, and says whether the model has the sixth row. Another model number moves nothing.
    void setModel(int model);
    // Buttons that the model has; 0 when the catalogue does not say.
    void setButtonCount(int count);
    bool isShown(std::size_t row) const;
    // Among the rows that are there.
    int countOf(const QString &text) const;

signals:
    void checkedChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row {
        QLabel *number;
        ActionButton *caption;
        QToolButton *marker;
    };

    void addRow(std::size_t row, QWidget *list, QWidget *picture);
    void showRows();

    QScrollArea *area_;
    QButtonGroup *group_;
    std::array<Row, ButtonRows.size()> rows_{};
    bool hasSixth_ = true;
    int buttonCount_ = 0;
};
