// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ButtonList: one row for each button of the mouse, with a number and a caption that names the button's
// function, and a marker on the picture for each row. A marker is checked while its row is, and each looks
// hovered while the other is. A row that the edge of the list cuts fades out. The page owns the widgets. Main
// thread.
#pragma once

#include "binding/ButtonTable.h"

#include <QObject>
#include <optional>

class ActionButton;
class QAbstractButton;
class QButtonGroup;
class QGridLayout;
class QLabel;
class PairedButton;
class QScrollArea;
class QWidget;
class ScrollFades;

class ButtonList : public QObject
{
    Q_OBJECT

public:
    // Adds the rows to the scroll area and the markers to the picture.
    ButtonList(QScrollArea *area, QWidget *picture);

    void applyStyle(const QString &folder);

    ActionButton *caption(std::size_t row) const { return rows_[row].caption; }
    PairedButton *marker(std::size_t row) const { return rows_[row].marker; }
    // No row for a number that is no button of the page.
    static std::optional<std::size_t> rowOf(int button);

    void setText(int button, const QString &text);
    void renewNames(); // in the current language

    int checkedRow() const; // -1 for none
    void check(std::size_t row);
    void uncheckAll();
    void scrollTo(std::size_t row);
    void scrollToTop();

    // Places the markers and shows the sixth row on model 0 only. An unknown model number changes nothing.
    void setModel(int model);
    // Number of buttons of the model; 0 when the catalogue has no number.
    void setButtonCount(int count);
    bool isShown(std::size_t row) const;
    // Counts the shown rows with this caption.
    int countOf(const QString &text) const;

signals:
    void checkedChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row {
        QLabel *number;
        ActionButton *caption;
        PairedButton *marker;
    };

    void addRow(std::size_t row, QWidget *list, QWidget *picture);
    void pair(const Row &row);
    void showRows();
    bool cutsRow(int y) const;

    QScrollArea *area_;
    QButtonGroup *group_;
    QGridLayout *grid_ = nullptr;
    std::array<Row, ButtonRows.size()> rows_{};
    ScrollFades *fades_ = nullptr;
    bool hasSixth_ = true;
    int buttonCount_ = 0;
};
