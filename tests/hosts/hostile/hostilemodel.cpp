#include "hostilemodel.h"

#include <algorithm>

namespace {

const int columns = 3;
const int rowsAtFirst = 6;
const int maximumRows = 14;

} // namespace

HostileModel::HostileModel(Chance& wantedChance, int depth, QObject* parent)
    : QAbstractItemModel(parent)
    , chance(wantedChance)
    , levels(depth)
    , root(new Row)
{
    fill(root.get(), levels);
}

HostileModel::~HostileModel() = default;

std::unique_ptr<HostileModel::Row> HostileModel::newRow(Row* above, int depth)
{
    std::unique_ptr<Row> row(new Row);
    row->above = above;
    const int number = ++named % 9 + 1; // texts come again
    for (int column = 0; column < columns; ++column)
        row->texts[column] = QString::fromLatin1(column == 0 ? "Item %1" : "Cell %1").arg(number);
    const int always = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsUserCheckable
        | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    row->flags = chance.oneIn(6) ? always & ~(1 << chance.below(6)) : always;
    row->checkState = chance.below(3);
    fill(row.get(), depth - 1);
    return row;
}

void HostileModel::fill(Row* above, int depth)
{
    if (depth <= 0)
        return;
    const int count = above->above ? chance.below(4) : rowsAtFirst;
    for (int i = 0; i < count; ++i)
        above->below.push_back(newRow(above, depth));
}

HostileModel::Row* HostileModel::rowOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<Row*>(index.internalPointer()) : root.get();
}

QModelIndex HostileModel::indexOf(Row* row, int column) const
{
    if (!row || row == root.get())
        return QModelIndex();
    const auto& siblings = row->above->below;
    const auto place = std::find_if(
        siblings.begin(), siblings.end(), [row](const std::unique_ptr<Row>& one) { return one.get() == row; });
    return createIndex(static_cast<int>(place - siblings.begin()), column, row);
}

QModelIndex HostileModel::index(int row, int column, const QModelIndex& parent) const
{
    const Row* above = rowOf(parent);
    if (row < 0 || column < 0 || column >= columns || row >= static_cast<int>(above->below.size()))
        return QModelIndex();
    return createIndex(row, column, above->below[static_cast<std::size_t>(row)].get());
}

QModelIndex HostileModel::parent(const QModelIndex& index) const
{
    return index.isValid() ? indexOf(rowOf(index)->above, 0) : QModelIndex();
}

int HostileModel::rowCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(rowOf(parent)->below.size());
}

int HostileModel::columnCount(const QModelIndex&) const
{
    return columns;
}

QVariant HostileModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const Row* row = rowOf(index);
    const int column = index.column();
    const QString text = row->texts[column];
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return column == 2 && levels == 1 && text.size() % 2 ? QVariant(text.size()) : QVariant(text);
    return role == Qt::CheckStateRole && column == 0 ? QVariant(row->checkState) : QVariant();
}

bool HostileModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || chance.oneIn(8))
        return false;
    if (role == Qt::CheckStateRole)
        rowOf(index)->checkState = value.toInt();
    else
        rowOf(index)->texts[index.column()] = value.toString();
    Q_EMIT dataChanged(index, index);
    return true;
}

Qt::ItemFlags HostileModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemFlags(QFlag(rowOf(index)->flags)) : Qt::NoItemFlags;
}

QVariant HostileModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    const char* format = orientation == Qt::Horizontal ? "Column %1" : "Row %1";
    return QString::fromLatin1(format).arg(section % 5);
}

QModelIndex HostileModel::randomParent()
{
    QModelIndex parent;
    while (chance.oneIn(2) && rowCount(parent) > 0)
        parent = index(chance.below(rowCount(parent)), 0, parent);
    return parent;
}

void HostileModel::change()
{
    const QModelIndex parent = randomParent();
    switch (chance.below(8)) {
    case 0:
    case 1:
        return insertOne(parent);
    case 2:
    case 3:
        return removeOne(parent);
    case 4:
        return moveOne(parent);
    case 5:
        if (rowCount(parent) > 0) {
            const QModelIndex changed = index(chance.below(rowCount(parent)), 0, parent);
            rowOf(changed)->flags ^= 1 << chance.below(6);
            Q_EMIT dataChanged(changed, changed);
        }
        return;
    case 6:
        Q_EMIT layoutAboutToBeChanged();
        Q_EMIT layoutChanged();
        return;
    default:
        if (chance.oneIn(3))
            startAnew();
    }
}

void HostileModel::insertOne(const QModelIndex& parent)
{
    Row* above = rowOf(parent);
    if (rowCount(parent) >= maximumRows)
        return;
    const int place = chance.below(rowCount(parent) + 1);
    beginInsertRows(parent, place, place);
    above->below.insert(above->below.begin() + place, newRow(above, 1));
    endInsertRows();
}

void HostileModel::removeOne(const QModelIndex& parent)
{
    if (rowCount(parent) == 0)
        return;
    const int place = chance.below(rowCount(parent));
    beginRemoveRows(parent, place, place);
    Row* above = rowOf(parent);
    above->below.erase(above->below.begin() + place);
    endRemoveRows();
}

void HostileModel::moveOne(const QModelIndex& parent)
{
    const int rows = rowCount(parent);
    if (rows < 2 || !beginMoveRows(parent, rows - 1, rows - 1, parent, 0))
        return;
    Row* above = rowOf(parent);
    std::rotate(above->below.begin(), above->below.end() - 1, above->below.end());
    endMoveRows();
}

void HostileModel::startAnew()
{
    beginResetModel();
    root.reset(new Row);
    if (!chance.oneIn(4))
        fill(root.get(), levels);
    endResetModel();
}
