// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// View of a mouse's flash: bytes, with changed ones highlighted briefly, and known fields by name. Selecting
// a field shows its bytes, selecting a byte its field.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <QTimer>
#include <QVector>

struct FlashField {
    QString name;
    int address;
    int size;
};
// All known fields by rising address.
const QVector<FlashField> &flashFields();
// The row in flashFields() that holds the byte; -1 for a byte outside all known fields.
int flashFieldAt(int address);

class FlashModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int BytesPerRow = 16;
    static constexpr int ShowChangeMs = 1500;

    explicit FlashModel(QObject *parent = nullptr);

    // An empty image is a flash that is not known. The first image of a mouse highlights nothing.
    void show(const QString &mouse, const QByteArray &image);
    bool isChanged(int address) const { return changed_.value(address); }
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void emitRow(int row);
    void fade();

    QString mouse_;
    QByteArray image_;
    QVector<bool> changed_; // by address
    QTimer fade_;
};

// Name, address and bytes of each field of the flash that a FlashModel shows.
class FieldModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit FieldModel(FlashModel *flash, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString bytesOf(const FlashField &field) const;
    bool isChanged(const FlashField &field) const;

    FlashModel *const flash_;
};

class FlashView : public QWidget
{
    Q_OBJECT

public:
    explicit FlashView(QWidget *parent = nullptr);

    void show(const QString &mouse, const QByteArray &image) { model_->show(mouse, image); }
    using QWidget::show;

private:
    void showWholeBytes();
    void chooseField(int row);
    void chooseByte(int address);

    FlashModel *const model_;
    QTableView *const bytes_;
    QTableView *const fields_;
};
