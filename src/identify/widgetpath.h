#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <vector>

class QWidget;

namespace identify {

// A widget path: the names of a widget and of ancestors, outermost first, joined by "/". The last element names the
// widget, each one before it the parent of what follows. An empty element is a gap: any number of levels.
//
// It is read from its end, and only as far as the widgets have ancestors: a path can be millions of elements long. The
// names that it returns share its text, and are not to be kept longer than the path.
class WidgetPath
{
public:
    explicit WidgetPath(const QString& path);

    // The last element as it stands.
    QString lastElement() const { return last; }

    // A name in the path.
    struct Step
    {
        QString name; // empty when nothing but a gap is left
        bool isAfterGap; // a gap follows it in the path, so that the walk up comes to it after the gap
        bool isOutermost; // nothing is left before it
    };
    // The name that comes in this place, counted from the end and from 0. One after the outermost, or after that of a gap,
    // must not be asked for.
    const Step& step(std::size_t fromEnd) const;

private:
    void readStep() const;

    QString text;
    QString last;
    mutable std::vector<Step> steps; // those that were asked for
    mutable int remaining; // where the elements that were not read yet end
};

// The name to search for: the last element of a path, or the empty text (not null) when that is "unnamed".
QString searchName(const QString& lastElement);

// Replaces `result` with the widgets below `parent`, and `parent` itself, that carry the name. In order: those with
// this object name, in child order; those without any object name whose derived name it is; `parent`.
void widgetList(QList<QWidget*>& result, QWidget* parent, const QString& name);

// Whether the path fits the widget and its ancestors up to and including `top`.
bool checkPath(const QWidget* widget, const QWidget* top, const WidgetPath& path);

} // namespace identify
