#include "identify/namesearch.h"

#include "identify/objectname.h"
#include "identify/pathfit.h"

#include <QWidget>

namespace {

struct Derivation
{
    QLatin1String suffix;
    bool (*hasStem)(const QObject* object, const QString& stem);
};

} // namespace

class NameSearch::LevelChain
{
public:
    explicit LevelChain(const std::vector<Level>& levels)
        : top(levels.data())
        , current(&levels.back())
    {
    }

    bool isNamed(const QString& name) const
    {
        return current->objectName.isEmpty() ? hasName(current->widget, name) : current->objectName == name;
    }
    bool isTop() const { return current == top; }
    void goUp() { --current; }

private:
    const Level* top;
    const Level* current;
};

NameSearch::Level::Level(QWidget* wantedWidget)
    : widget(wantedWidget)
    , objectName(wantedWidget->objectName())
{
}

NameSearch::NameSearch(const QString& searchedName)
    : name(searchedName)
{
    const Derivation derivations[] = {
        {actionButtonSuffix, hasActionButtonStem},
        {dialogButtonSuffix, hasDialogButtonStem},
        {inputDialogSuffix, hasInputDialogChildStem},
    };
    for (const Derivation& derivation : derivations) {
        if (name.endsWith(derivation.suffix)) {
            hasDerivedStem = derivation.hasStem;
            stem = withoutSuffix(name, derivation.suffix);
        }
    }
}

void NameSearch::search(QWidget* top)
{
    levels.emplace_back(top);
    searchBelow(top);
    if (levels.back().objectName == name)
        found(top, Kind::ObjectName);
    levels.pop_back();
}

void NameSearch::searchBelow(const QObject* parent)
{
    for (QObject* child : parent->children()) {
        const bool hasChildren = !child->children().isEmpty();
        if (!child->isWidgetType()) {
            if (hasChildren)
                searchBelow(child);
            continue;
        }
        const Level level(static_cast<QWidget*>(child));
        const bool isObjectName = level.objectName == name;
        const bool isFound = isObjectName || isDerivedName(level);
        if (!isFound && !hasChildren)
            continue;
        levels.push_back(level);
        if (isFound)
            found(level.widget, isObjectName ? Kind::ObjectName : Kind::DerivedName);
        if (hasChildren)
            searchBelow(child);
        levels.pop_back();
    }
}

// An object name that was set, even to "", turns derived names off.
bool NameSearch::isDerivedName(const Level& level) const
{
    return hasDerivedStem && level.objectName.isNull() && hasDerivedStem(level.widget, stem);
}

bool NameSearch::pathFitsFound(const WidgetPath& path) const
{
    return pathFits(LevelChain(levels), path);
}
