#pragma once

#include "chance.h"

#include <QStringList>
#include <QtCore/QAbstractItemModel>

#include <memory>
#include <vector>

// A tree of rows with three columns that changes its structure at any time. Its indexes point to its rows, so one that
// is used after its row is gone reads freed memory, which the sanitizer sees.
class HostileModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // depth: how many levels of rows there are.
    HostileModel(Chance& wantedChance, int depth, QObject* parent);
    ~HostileModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // One random change: rows go, come or move, texts and flags change, everything is thrown away.
    void change();

private:
    struct Row
    {
        Row* above = nullptr;
        QString texts[3];
        int checkState = Qt::Unchecked;
        int flags = 0;
        std::vector<std::unique_ptr<Row>> below;
    };

    Row* rowOf(const QModelIndex& index) const;
    QModelIndex indexOf(Row* row, int column) const;
    QModelIndex randomParent();
    std::unique_ptr<Row> newRow(Row* above, int depth);
    void fill(Row* above, int depth);
    void insertOne(const QModelIndex& parent);
    void removeOne(const QModelIndex& parent);
    void moveOne(const QModelIndex& parent);
    void startAnew();

    Chance& chance;
    int levels;
    int named = 0;
    std::unique_ptr<Row> root;
};
