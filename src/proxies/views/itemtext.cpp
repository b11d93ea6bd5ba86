#include "proxies/views/itemtext.h"

#include "compat/variant.h"

namespace views {

namespace {

PathSegment segmentFrom(const QString& path, int begin)
{
    const int separator = static_cast<int>(path.indexOf(QLatin1Char('/'), begin));
    const int end = separator < 0 ? static_cast<int>(path.size()) : separator;
    return {QString::fromRawData(path.constData() + begin, end - begin), end};
}

} // namespace

QModelIndex cellAt(const QAbstractItemModel* model, int row, int column, const QModelIndex& parent)
{
    return model && model->hasIndex(row, column, parent) ? model->index(row, column, parent) : QModelIndex();
}

PathSegment firstSegment(const QString& path)
{
    return segmentFrom(path, 0);
}

PathSegment segmentAfter(const QString& path, const PathSegment& segment)
{
    return segmentFrom(path, segment.end + 1);
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

} // namespace views
