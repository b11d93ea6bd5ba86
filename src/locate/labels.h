#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <vector>

class QFormLayout;
class QGridLayout;
class QLabel;
class QBoxLayout;
class QLayout;
class QLayoutItem;
class QObject;
class QWidget;

namespace locate {

class TextVisitor;
class WidgetKinds;

// The labels of the fields in a window, found in one pass. To be used before any of the application's code runs, which
// can delete widgets. A widget with several labels has the first of these: one whose buddy it is; the label of its row
// in a form layout; the label right before it in its row of a grid layout or in a horizontal box layout; the title of
// the group box that holds nothing else. Where a row holds a layout or a plain container, the label is that of the
// first field in it.
class Labels
{
public:
    Labels(const QWidget* window, const WidgetKinds& kinds);

    // The label as it is shown; empty when there is none.
    QString of(const QWidget* widget) const;
    // The widget that shows it; null when there is none.
    const QWidget* widgetThatLabels(const QWidget* widget) const;
    // The widgets whose label has a text that the visitor accepts.
    QSet<const QWidget*> labelledBy(TextVisitor& visitor) const;

private:
    enum class Rule { GroupBox, Box, Grid, Form, Buddy }; // a later rule wins over an earlier one
    struct Source
    {
        const QWidget* field;
        const QWidget* label;
        Rule rule;
    };
    using Sources = QHash<const QWidget*, const Source*>;

    void readBelow(const QObject* parent);
    void readLayout(const QLayout* layout);
    void readForm(const QFormLayout* form);
    void readGrid(const QGridLayout* grid);
    void readBox(const QBoxLayout* box);
    void readGroupBox(const QWidget* box);
    void add(const QWidget* label, const QLayoutItem* field, Rule rule);
    void add(const QWidget* label, const QWidget* field, Rule rule);

    bool isLabel(const QWidget* label, TextVisitor& visitor) const;
    static void keepBetter(Sources& kept, const Source& source);

    const WidgetKinds& kinds;
    std::vector<Source> sources; // in the order in which they are found
    mutable Sources best; // of each field, once somebody asks
};

} // namespace locate
