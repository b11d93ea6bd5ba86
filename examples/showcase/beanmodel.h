#pragma once

#include <QAbstractTableModel>
#include <QStringList>

/// The beans in store: name, origin, kilograms (editable) and whether they are on sale (checkable).
class BeanModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit BeanModel(QObject* parent);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    enum Column { Name, Origin, Kilograms, OnSale, ColumnCount };

    struct Bean
    {
        QString name;
        QString origin;
        int kilograms;
        bool onSale;
    };

    QList<Bean> m_beans;
};
