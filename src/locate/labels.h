#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>

class QFormLayout;
class QGridLayout;
class QLabel;
class QBoxLayout;
class QLayout;
class QLayoutItem;
class QObject;
class QWidget;

namespace locate {

class WidgetKinds;

// What names the fields of a window to a user's eye: found in one pass, and to be used before anything else happens to the
// window. Of several labels of one widget it is, in this order: one whose buddy it is; the label of its row in a form
// layout; the label right before it in its row of a grid layout or in a horizontal box layout; the title of the group box
// that holds nothing else. Where a row holds a layout or a plain container, the label is that of the first field in it.
class Labels
{
public:
    Labels(const QWidget* window, const WidgetKinds& kinds);

    // The label as it is shown; empty when there is none.
    QString of(const QWidget* widget) const;
    // The widget that shows it; null when there is none.
    const QWidget* widgetThatLabels(const QWidget* widget) const { return sources.value(widget).widget; }

private:
    enum class Rule { GroupBox, Box, Grid, Form, Buddy }; // later ones count more
    struct Source
    {
        const QWidget* widget = nullptr;
        Rule rule = Rule::GroupBox;
    };

    void readBelow(const QObject* parent);
    void readLayout(const QLayout* layout);
    void readForm(const QFormLayout* form);
    void readGrid(const QGridLayout* grid);
    void readBox(const QBoxLayout* box);
    void readGroupBox(const QWidget* box);
    void add(const QWidget* label, const QLayoutItem* field, Rule rule);
    void add(const QWidget* label, const QWidget* field, Rule rule);

    const WidgetKinds& kinds;
    QHash<const QWidget*, Source> sources;
};

} // namespace locate
