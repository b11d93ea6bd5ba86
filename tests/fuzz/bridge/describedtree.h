#pragma once

#include <QtCore/QStringList>

#include <memory>
#include <vector>

class QObject;
class QWidget;

// A widget, or a tray icon, as the input describes it.
struct Described
{
    enum class Kind { Widget, CheckBox, GroupBox, RadioButton, TrayIcon };

    Kind kind = Kind::Widget;
    int parent = -1; // the number of another one; -1: none
    bool isWindow = false;
    bool isHidden = false;
    QString name; // null: it has none
    QString providedName; // by the name provider, when there is one
    QString title;
};

// One line for each: ">" for each level, then signs in any order, and its name. "-" hidden, "#" the name is the
// provider's, "^" a window, although it has a parent; "%" a check box, "$" a group box, "@" a radio button, "+" a tray
// icon. A window's title follows its name, after "|".
std::vector<Described> describedBy(const QStringList& lines);

// The widgets of a description, alive and shown.
class DescribedTree
{
public:
    explicit DescribedTree(const std::vector<Described>& descriptions);
    ~DescribedTree();

    // The object of a number; null when there is none.
    QObject* at(int number) const;
    QWidget* widgetAt(int number) const;

private:
    std::vector<QObject*> objects;
    std::vector<std::unique_ptr<QObject>> roots;
};
