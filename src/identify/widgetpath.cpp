#include "identify/widgetpath.h"

#include "identify/namesearch.h"
#include "identify/objectname.h"
#include "identify/pathfit.h"

#include <QWidget>

#include <algorithm>

namespace identify {

namespace {

const QLatin1Char separator('/');

// The text's own characters from one place to another.
QString part(const QString& text, int begin, int end)
{
    return QString::fromRawData(text.constData() + begin, end - begin);
}

class CandidateList : public NameSearch
{
public:
    explicit CandidateList(const QString& name)
        : NameSearch(name)
    {
    }

    QList<QWidget*> named;
    QList<QWidget*> derived;

protected:
    void found(QWidget* widget, Kind kind) override { (kind == Kind::ObjectName ? named : derived).append(widget); }
};

} // namespace

WidgetPath::WidgetPath(const QString& path)
    : text(path)
    , last(part(text, static_cast<int>(text.lastIndexOf(separator)) + 1, static_cast<int>(text.size())))
    , remaining(static_cast<int>(text.size()))
{
}

const WidgetPath::Step& WidgetPath::step(std::size_t fromEnd) const
{
    while (steps.size() <= fromEnd)
        readStep();
    return steps[fromEnd];
}

void WidgetPath::readStep() const
{
    int end = remaining;
    while (end > 0 && text.at(end - 1) == separator)
        --end;
    const int begin = end > 0 ? static_cast<int>(text.lastIndexOf(separator, end - 1)) + 1 : 0;
    steps.push_back({part(text, begin, end), end < remaining, begin == 0});
    remaining = begin - 1; // the separator before the name ends the element before it
}

QString searchName(const QString& lastElement)
{
    // Never null: to QObject::findChildren() a null name means "any".
    return lastElement.isEmpty() || lastElement == unnamed ? QString(QLatin1String("")) : lastElement;
}

void widgetList(QList<QWidget*>& result, QWidget* parent, const QString& name)
{
    CandidateList candidates(name);
    candidates.search(parent);
    // The order is fixed: `parent`, which the search finds last, comes after those with a derived name.
    const bool withParent = !candidates.named.isEmpty() && candidates.named.last() == parent;
    if (withParent)
        candidates.named.removeLast();
    result = candidates.named + candidates.derived;
    if (withParent)
        result.append(parent);
}

bool checkPath(const QWidget* widget, const QWidget* top, const WidgetPath& path)
{
    std::vector<NamedWidget> lineage;
    for (const QWidget* ancestor = widget; ancestor; ancestor = ancestor == top ? nullptr : ancestor->parentWidget())
        lineage.emplace_back(ancestor);
    std::reverse(lineage.begin(), lineage.end());
    return pathFits(lineage, path);
}

} // namespace identify
