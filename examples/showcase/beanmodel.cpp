#include "beanmodel.h"

BeanModel::BeanModel(QObject* parent)
    : QAbstractTableModel(parent)
{
    const struct
    {
        const char* name;
        const char* origin;
        int kilograms;
        bool onSale;
    } rows[] = {
        {"Santos", "Brazil", 120, true},
        {"Huila", "Colombia", 45, true},
        {"Sidamo", "Ethiopia", 30, false},
        {"Nyeri", "Kenya", 18, true},
        {"Gayo", "Sumatra", 60, false},
        {"Antigua", "Guatemala", 25, true},
        {"Tarrazu", "Costa Rica", 12, false},
        {"Mocha", "Yemen", 4, true},
    };
    for (const auto& row : rows)
        m_beans.append({QLatin1String(row.name), QLatin1String(row.origin), row.kilograms, row.onSale});
}

int BeanModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_beans.size());
}

int BeanModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant BeanModel::data(const QModelIndex& index, int role) const
{
    const Bean& bean = m_beans.at(index.row());
    if (role == Qt::CheckStateRole && index.column() == OnSale)
        return int(bean.onSale ? Qt::Checked : Qt::Unchecked);
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return QVariant();
    switch (index.column()) {
    case Name:
        return bean.name;
    case Origin:
        return bean.origin;
    case Kilograms:
        return bean.kilograms;
    default:
        return QVariant();
    }
}

bool BeanModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    Bean& bean = m_beans[index.row()];
    if (role == Qt::CheckStateRole && index.column() == OnSale)
        bean.onSale = value.toInt() == Qt::Checked;
    else if (role == Qt::EditRole && index.column() == Kilograms)
        bean.kilograms = value.toInt();
    else
        return false;
    Q_EMIT dataChanged(index, index);
    return true;
}

Qt::ItemFlags BeanModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() == Kilograms)
        return flags | Qt::ItemIsEditable;
    return index.column() == OnSale ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant BeanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QString titles[] = {tr("Bean"), tr("Origin"), tr("Kilograms"), tr("On sale")};
    return section < ColumnCount ? titles[section] : QString();
}
