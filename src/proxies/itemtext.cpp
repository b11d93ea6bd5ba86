#include "proxies/itemtext.h"

#include "compat/variant.h"

QModelIndex cellAt(const QAbstractItemModel* model, int row, int column, const QModelIndex& parent)
{
    return model && model->hasIndex(row, column, parent) ? model->index(row, column, parent) : QModelIndex();
}

QString displayText(const QModelIndex& index)
{
    return compat::textOf(index.data(Qt::DisplayRole));
}

QString headerText(const QAbstractItemModel& model, int section, Qt::Orientation orientation)
{
    return compat::textOf(model.headerData(section, orientation, Qt::DisplayRole));
}

int findHeaderText(
    const QAbstractItemModel& model, Qt::Orientation orientation, const QString& text, int from, int count)
{
    for (int section = from; section < count; ++section) {
        if (headerText(model, section, orientation) == text)
            return section;
    }
    return -1;
}
