#pragma once

#include <QtCore/QString>

#include <vector>

class QObject;
class QWidget;
class WidgetPath;

// The search for all widgets with a name, in one walk, where QObject::findChildren() would take one for object names and
// one for derived names. The walk reads each object name once, and keeps those on the way from the top to where it is.
class NameSearch
{
public:
    virtual ~NameSearch() = default;
    NameSearch(const NameSearch&) = delete;
    NameSearch& operator=(const NameSearch&) = delete;

    // Below `top` in the order of findChildren(), each child before what is below it; then `top`, by its object name
    // only.
    void search(QWidget* top);

protected:
    // The name is one to search for (searchName()): not null.
    explicit NameSearch(const QString& searchedName);

    enum class Kind {
        ObjectName, // the widget has this object name
        DerivedName, // the widget never got an object name, and its derived name is this one
    };
    virtual void found(QWidget* widget, Kind kind) = 0;

    // Within found(): whether the path fits the widget that was found and its ancestors up to the top.
    bool pathFitsFound(const WidgetPath& path) const;

private:
    struct Level
    {
        // Makes the name in its place: a QString of Qt 4 cannot be moved, and a copy costs as much as a comparison.
        explicit Level(QWidget* wantedWidget);

        QWidget* widget;
        QString objectName;
    };
    class LevelChain;

    void searchBelow(const QObject* parent);
    bool isDerivedName(const Level& level) const;

    const QString name;
    bool (*hasDerivedStem)(const QObject* object, const QString& stem) = nullptr;
    QString stem; // the name without the suffix of derived names
    std::vector<Level> levels; // from the top to where the walk is
};
