#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>

class QAction;
class QWidget;

// A window with widgets of every kind that names are derived for, on several levels, and two more windows. All of them
// live as long as the process; each input names them anew.
class NamedWindow
{
public:
    NamedWindow();

    // One line for each widget, in the order of widgets(), then one for the window. The first character says what the
    // rest is: "=" its object name, "-" the same, and it is hidden, "#" the label or the name of the action from which
    // its name is derived, and it has no object name. No line, or an empty one: it has neither.
    void rename(const QStringList& lines);

    QWidget* window() const { return root; }
    // All widgets below the window, in the order of children.
    QList<QWidget*> widgets() const { return below; }
    // The widgets' present names, for messages.
    QString description() const;

private:
    template <class Widget>
    QWidget* add(QWidget* parent);
    void addLevel(QWidget* parent, int levels);
    static void rename(QWidget* widget, const QString& line);

    QWidget* root;
    QList<QWidget*> below;
};
