#include "naiveitems.h"

#include "fuzzing.h"

#include <QListView>
#include <QTableView>
#include <QTreeView>

namespace naive {

namespace {

QString message(const char* format, int first, int second = 0)
{
    return QString::fromLatin1(format).arg(first).arg(second);
}

QString text(const QModelIndex& index)
{
    return index.data().toString();
}

QString rowText(const QTreeView& view, const QModelIndex& index)
{
    QString result;
    for (int column = 0; column < view.model()->columnCount(index.parent()); ++column) {
        if (!view.isColumnHidden(column))
            result += (result.isEmpty() ? QString() : QString(QLatin1Char(':')))
                + text(view.model()->index(index.row(), column, index.parent()));
    }
    return result;
}

bool matches(const QString& segment, const QString& row)
{
    const QStringList wanted = segment.split(QLatin1Char(':'));
    return wanted == row.split(QLatin1Char(':')).mid(0, wanted.size());
}

QList<int> sectionsCalled(const QAbstractItemModel& model, Qt::Orientation orientation, const QString& name, int count)
{
    QList<int> sections;
    for (int i = 0; i < count; ++i) {
        if (model.headerData(i, orientation).toString() == name)
            sections.append(i);
    }
    return sections;
}

// The section of a table that a part of a cell address names, or the error.
int tableSection(const QTableView& view, Qt::Orientation orientation, const QString& name, QString& error)
{
    const bool rows = orientation == Qt::Vertical;
    const int count = rows ? view.model()->rowCount() : view.model()->columnCount();
    QList<int> named;
    const QList<int> all = sectionsCalled(*view.model(), orientation, name, count);
    for (const int section : all) {
        if (!(rows ? view.isRowHidden(section) : view.isColumnHidden(section)))
            named.append(section);
    }
    bool ok = false;
    const int number = name.toInt(&ok, 10);
    const char* word = rows ? "row" : "column";
    if (named.size() > 1)
        error = QString::fromLatin1("Same %1 name at %1 ").arg(QLatin1String(word))
            + message("%1 and %2", named.at(0) + 1, named.at(1) + 1);
    else if (named.isEmpty() && !ok)
        error = QLatin1String(rows ? "Row " : "Column ") + fuzzing::shown(name) + QLatin1String(" not found");
    else if (named.isEmpty() && (number < 1 || number > count))
        error = QString::fromLatin1("Invalid %1 ").arg(QLatin1String(word))
            + message("%1 is out of range [1, %2]", number, count);
    return named.isEmpty() ? number - 1 : named.first();
}

// The section of a model that a number or a header text names; -1 for none.
int modelSection(const QAbstractItemModel& model, Qt::Orientation orientation, const QString& name, int count, bool& ok)
{
    const int number = name.toInt(&ok, 10);
    if (ok)
        return number - 1;
    const QList<int> named = sectionsCalled(model, orientation, name, count);
    ok = !named.isEmpty();
    return named.value(0, -1);
}

QString limited(const QString& text)
{
    return fuzzing::shown(text).left(2047);
}

} // namespace

QString treePath(const QTreeView& view, const QModelIndex& index)
{
    if (!index.isValid())
        return QString();
    const QString above = treePath(view, index.parent());
    return (index.parent().isValid() ? above + QLatin1Char('/') : QString()) + rowText(view, index);
}

QStringList treePaths(const QTreeView& view, const QModelIndex& parent, const QString& prefix)
{
    QStringList paths;
    for (int row = 0; row < view.model()->rowCount(parent); ++row) {
        if (view.isRowHidden(row, parent))
            continue;
        const QModelIndex index = view.model()->index(row, 0, parent);
        const QString path = prefix + rowText(view, index);
        paths.append(path);
        paths += treePaths(view, index, path + QLatin1Char('/'));
    }
    return paths;
}

QModelIndex treeItem(const QTreeView& view, const QStringList& segments, const QModelIndex& parent)
{
    for (int row = 0; row < view.model()->rowCount(parent); ++row) {
        const QModelIndex index = view.model()->index(row, 0, parent);
        if (!matches(segments.first(), rowText(view, index)))
            continue;
        const QModelIndex found = segments.size() == 1 ? index : treeItem(view, segments.mid(1), index);
        if (found.isValid())
            return found;
    }
    return QModelIndex();
}

QModelIndex listItem(const QListView& view, const QString& wanted)
{
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        if (!view.isRowHidden(row) && text(view.model()->index(row, 0)) == wanted)
            return view.model()->index(row, 0);
    }
    return QModelIndex();
}

Found tableCell(const QTableView& view, const QString& address)
{
    Found found;
    const QStringList parts = address.split(QLatin1Char(':'));
    if (parts.size() < 2) {
        found.error = QLatin1String("Syntax Error, format \"%r:%c\" expected");
        return found;
    }
    const int row = tableSection(view, Qt::Vertical, parts.at(0), found.error);
    const int column = found.error.isEmpty() ? tableSection(view, Qt::Horizontal, parts.at(1), found.error) : -1;
    found.error = limited(found.error);
    if (found.error.isEmpty())
        found.index = view.model()->index(row, column);
    return found;
}

Found tableHeader(const QTableView& view, Qt::Orientation orientation, const QString& number)
{
    const bool rows = orientation == Qt::Vertical;
    const int count = rows ? view.model()->rowCount() : view.model()->columnCount();
    bool ok = false;
    const int section = QVariant(number).toInt(&ok);
    Found found;
    (rows ? found.row : found.column) = section - 1;
    if (!ok)
        found.error = QLatin1String("Invalid integer");
    else if (section < 1 || section > count)
        found.error = QLatin1String(rows ? "Invalid row " : "Invalid col ")
            + message("%1 is out of range [1, %2]", section, count);
    else if (rows ? view.isRowHidden(section - 1) : view.isColumnHidden(section - 1))
        found.error = QLatin1String(rows ? "row " : "column ") + QString::number(section) + QLatin1String(" is hidden");
    return found;
}

Found modelItem(const QAbstractItemModel& model, const QString& path)
{
    Found found;
    const QStringList steps = path.isEmpty() ? QStringList() : path.split(QLatin1Char('/'));
    for (const QString& step : steps) {
        const QStringList parts = step.split(QLatin1Char(';'));
        const int rows = model.rowCount(found.index);
        const int columns = model.columnCount(found.index);
        bool rowOk = false;
        bool columnOk = true;
        const int row = modelSection(model, Qt::Vertical, parts.first(), rows, rowOk);
        const int column = parts.size() == 1 ? 0 : modelSection(model, Qt::Horizontal, parts.at(1), columns, columnOk);
        if (parts.size() > 2)
            found.error = QLatin1String("Syntax error in path");
        else if (!rowOk)
            found.error = limited(QLatin1String("Invalid row: ") + parts.first());
        else if (!columnOk)
            found.error = limited(QLatin1String("Invalid column: ") + parts.at(1));
        else if (row < 0 || row >= rows)
            found.error = message("Row %1 is out of range (0..%2)", row + 1, rows);
        else if (column < 0 || column >= columns)
            found.error = message("Column %1 is out of range (0..%2)", column + 1, columns);
        if (!found.error.isEmpty())
            return found;
        found.index = model.index(row, column, found.index);
    }
    return found;
}

bool headerSection(const QAbstractItemModel& model, const QString& address, Found& found)
{
    const bool rows = address.startsWith(QLatin1String("V:"));
    const QString letter = address.left(1);
    if (address.size() < 3 || address.at(1) != QLatin1Char(':') || !QLatin1String("VvHh").contains(letter.at(0)))
        return false;
    const QString name = address.mid(2);
    const int count = rows ? model.rowCount() : model.columnCount();
    bool ok = false;
    const int section = modelSection(model, rows ? Qt::Vertical : Qt::Horizontal, name, count, ok);
    if (section < 0 || section >= count)
        found.error = limited(QLatin1String(rows ? "Invalid row: " : "Invalid column: ") + name);
    else
        (rows ? found.row : found.column) = section;
    return true;
}

} // namespace naive
