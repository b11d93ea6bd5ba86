#include "menuitem.h"

namespace {

const int maximumItems = 20;
const int maximumDepth = 4;

int depthOf(const QString& line)
{
    int depth = 0;
    while (line.mid(depth, 1) == QLatin1String(">"))
        ++depth;
    return qMin(depth, maximumDepth);
}

MenuItem itemOf(QString line, int number)
{
    while (line.startsWith(QLatin1Char('>')))
        line.remove(0, 1);
    int signCount = 0;
    while (signCount < line.size() && QLatin1String("!#*+-").contains(line.at(signCount)))
        ++signCount;
    const QString signs = line.left(signCount);
    MenuItem item;
    item.line = number;
    item.text = line.mid(signCount);
    item.isHidden = signs.contains(QLatin1Char('!'));
    item.isDisabled = signs.contains(QLatin1Char('#'));
    item.isChecked = signs.contains(QLatin1Char('+'));
    item.isCheckable = item.isChecked || signs.contains(QLatin1Char('*'));
    item.isSeparator = signs.contains(QLatin1Char('-'));
    return item;
}

void fill(std::vector<MenuItem>& items, const QStringList& lines, int& next, int depth)
{
    while (next < lines.size() && depthOf(lines.at(next)) >= depth) {
        items.push_back(itemOf(lines.at(next), next));
        ++next;
        if (next < lines.size() && depthOf(lines.at(next)) > depth)
            fill(items.back().items, lines, next, depth + 1);
    }
}

} // namespace

std::vector<MenuItem> menuOf(const QStringList& lines)
{
    std::vector<MenuItem> items;
    int next = 0;
    fill(items, lines.mid(0, maximumItems), next, 0);
    return items;
}
