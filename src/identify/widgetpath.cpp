#include "identify/widgetpath.h"

#include "identify/namesearch.h"
#include "identify/objectname.h"
#include "identify/pathfit.h"

#include <QWidget>

namespace {

// The chain of a widget and its parents.
class ParentChain
{
public:
    ParentChain(const QWidget* widget, const QWidget* topWidget)
        : current(widget)
        , top(topWidget)
    {
    }

    bool isNamed(const QString& name) const { return hasName(current, name); }
    bool isTop() const { return current == top; }
    void goUp() { current = current->parentWidget(); }

private:
    const QWidget* current;
    const QWidget* top;
};

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

QStringList splitPath(const QString& path)
{
    return path.split(QLatin1Char('/'));
}

QString searchName(const QStringList& path)
{
    // Never null: to QObject::findChildren() a null name means "any".
    const QString& last = path.last();
    return last.isEmpty() || last == unnamed ? QString(QLatin1String("")) : last;
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

bool checkPath(const QWidget* widget, const QWidget* top, const QStringList& path)
{
    return pathFits(ParentChain(widget, top), path);
}
