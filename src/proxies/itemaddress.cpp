#include "proxies/itemaddress.h"

#include "proxies/itemtext.h"
#include "proxy/sterror.h"

#include <QRegExp>
#include <QtCore/QStringList>

namespace {

const char syntaxMessage[] = "Syntax error in path";
const char pathNotFoundMessage[] = "Path not found";

struct SectionMessages
{
    const char* unknown;
    const char* outOfRange;
};

// The lower bound in the texts is 0 although numbers begin at 1, which is intended.
const SectionMessages rowMessages = {"Invalid row: %s", "Row %d is out of range (0..%d)"};
const SectionMessages columnMessages = {"Invalid column: %s", "Column %d is out of range (0..%d)"};

const SectionMessages& messages(Qt::Orientation header)
{
    return header == Qt::Vertical ? rowMessages : columnMessages;
}

int sectionCount(const QAbstractItemModel& model, Qt::Orientation header, const QModelIndex& parent)
{
    return header == Qt::Vertical ? model.rowCount(parent) : model.columnCount(parent);
}

// The section of a number from 1 or a header text, -1 for an unknown text. A number may be out of range.
qint64 sectionOf(const QAbstractItemModel& model, Qt::Orientation header, const QString& text, int count, bool* found)
{
    const qint64 number = text.toInt(found, 10);
    if (*found)
        return number - 1;
    const int section = findHeaderText(model, header, text, 0, count);
    *found = section >= 0;
    return section;
}

qint64 knownSection(const QAbstractItemModel& model, Qt::Orientation header, const QString& text, int count)
{
    bool found = false;
    const qint64 section = sectionOf(model, header, text, count, &found);
    if (!found)
        raiseError(messages(header).unknown, text);
    return section;
}

// The section, if there is one; it may be the one before the smallest int.
int inRange(qint64 section, Qt::Orientation header, int count)
{
    if (section < 0 || section >= count)
        raiseError(messages(header).outOfRange, static_cast<int>(section + 1), count);
    return static_cast<int>(section);
}

QModelIndex childAt(const QAbstractItemModel& model, const QString& step, const QModelIndex& parent)
{
    const QStringList parts = step.split(QLatin1Char(';'));
    if (parts.size() > 2)
        raiseError(syntaxMessage);
    const int rows = model.rowCount(parent);
    const int columns = model.columnCount(parent);
    const qint64 row = knownSection(model, Qt::Vertical, parts.at(0), rows);
    const qint64 column = parts.size() == 2 ? knownSection(model, Qt::Horizontal, parts.at(1), columns) : 0;
    const int rowInRange = inRange(row, Qt::Vertical, rows);
    return model.index(rowInRange, inRange(column, Qt::Horizontal, columns), parent);
}

} // namespace

QModelIndex indexAtPath(const QAbstractItemModel& model, const QString& path)
{
    QModelIndex index;
    if (path.isEmpty())
        return index;
    const QStringList steps = path.split(QLatin1Char('/'));
    for (const QString& step : steps) {
        index = childAt(model, step, index);
        if (!index.isValid())
            raiseError(pathNotFoundMessage);
    }
    return index;
}

bool readHeaderAddress(const QAbstractItemModel& model, const QString& text, ItemAddress& address)
{
    QRegExp pattern(QLatin1String("(V|H|v|h):(.+)"));
    if (!pattern.exactMatch(text))
        return false;
    // Only "V" means rows; a small "v" means columns, which is intended.
    const Qt::Orientation header = pattern.cap(1) == QLatin1String("V") ? Qt::Vertical : Qt::Horizontal;
    const QString name = pattern.cap(2);
    const int count = sectionCount(model, header, QModelIndex());
    const qint64 section = knownSection(model, header, name, count);
    if (section < 0 || section >= count)
        raiseError(messages(header).unknown, name);
    address.row = header == Qt::Vertical ? static_cast<int>(section) : -1;
    address.column = header == Qt::Vertical ? -1 : static_cast<int>(section);
    return true;
}
