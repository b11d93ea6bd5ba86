#include "locate/labels.h"

#include "locate/kinds.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include <algorithm>
#include <vector>

namespace locate {

namespace {

const QLabel* labelIn(const QLayoutItem* item)
{
    return item ? qobject_cast<const QLabel*>(const_cast<QLayoutItem*>(item)->widget()) : nullptr;
}

// A widget that only holds a layout.
bool isPlainContainer(const QWidget* widget)
{
    const QMetaObject* metaObject = widget->metaObject();
    return widget->layout() && (metaObject == &QWidget::staticMetaObject || metaObject == &QFrame::staticMetaObject);
}

const QWidget* firstField(const QLayoutItem* item);

const QWidget* firstFieldIn(const QLayout* layout)
{
    for (int i = 0; i < layout->count(); ++i) {
        if (const QWidget* field = firstField(layout->itemAt(i)))
            return field;
    }
    return nullptr;
}

// The first widget in a layout item that is not a label.
const QWidget* firstField(const QLayoutItem* item)
{
    auto* any = const_cast<QLayoutItem*>(item);
    if (!any)
        return nullptr;
    if (const QLayout* layout = any->layout())
        return firstFieldIn(layout);
    const QWidget* widget = any->widget();
    if (!widget || qobject_cast<const QLabel*>(widget))
        return nullptr;
    return isPlainContainer(widget) ? firstFieldIn(widget->layout()) : widget;
}

const QWidget* fieldOf(const QWidget* buddy)
{
    const QWidget* field = isPlainContainer(buddy) ? firstFieldIn(buddy->layout()) : nullptr;
    return field ? field : buddy;
}

// The widget that a label beside the item belongs to: a label, too, where the item holds nothing else.
const QWidget* fieldOf(const QLayoutItem* item)
{
    const QWidget* field = firstField(item);
    return field ? field : labelIn(item);
}

// Whether what comes after the item stands apart from what comes before it.
bool isGap(const QLayoutItem* item)
{
    return !const_cast<QLayoutItem*>(item)->spacerItem() || item->expandingDirections() & Qt::Horizontal;
}

struct Cell
{
    int row;
    int column;
    const QLayoutItem* item;

    bool operator<(const Cell& other) const { return row != other.row ? row < other.row : column < other.column; }
};

std::vector<Cell> cellsOf(const QGridLayout* grid)
{
    std::vector<Cell> cells;
    cells.reserve(static_cast<std::size_t>(grid->count()));
    for (int i = 0; i < grid->count(); ++i) {
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        const_cast<QGridLayout*>(grid)->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        cells.push_back({row, column, grid->itemAt(i)});
    }
    std::sort(cells.begin(), cells.end());
    return cells;
}

} // namespace

Labels::Labels(const QWidget* window, const WidgetKinds& widgetKinds)
    : kinds(widgetKinds)
{
    if (window->layout())
        readLayout(window->layout());
    readBelow(window);
}

QString Labels::of(const QWidget* widget) const
{
    const QWidget* label = widgetThatLabels(widget);
    const TextReader reader = label ? kinds.of(label).readTexts : nullptr;
    return reader ? firstShownText(label, reader) : QString();
}

const QWidget* Labels::widgetThatLabels(const QWidget* widget) const
{
    if (best.isEmpty()) {
        for (const Source& source : sources)
            keepBetter(best, source);
    }
    const Source* source = best.value(widget);
    return source ? source->label : nullptr;
}

QSet<const QWidget*> Labels::labelledBy(TextVisitor& visitor) const
{
    // Fields that have a label with such a text. Only for these the label that counts is looked for.
    Sources candidates;
    for (const Source& source : sources) {
        if (isLabel(source.label, visitor))
            candidates.insert(source.field, nullptr);
    }
    QSet<const QWidget*> labelled;
    if (candidates.isEmpty())
        return labelled;
    for (const Source& source : sources) {
        if (candidates.contains(source.field))
            keepBetter(candidates, source);
    }
    for (const Source* source : candidates) {
        if (isLabel(source->label, visitor))
            labelled.insert(source->field);
    }
    return labelled;
}

bool Labels::isLabel(const QWidget* label, TextVisitor& visitor) const
{
    const TextReader reader = kinds.of(label).readTexts;
    return reader && reader(label, visitor);
}

// The first of two labels by the same rule counts.
void Labels::keepBetter(Sources& kept, const Source& source)
{
    const Source*& other = kept[source.field];
    if (!other || source.rule > other->rule)
        other = &source;
}

void Labels::readBelow(const QObject* parent)
{
    for (const QObject* child : parent->children()) {
        if (!child || !child->isWidgetType()) // null: it is being deleted with its parent
            continue;
        const auto* widget = static_cast<const QWidget*>(child);
        if (widget->isWindow())
            continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            if (label->buddy())
                add(label, fieldOf(label->buddy()), Rule::Buddy);
        } else if (!widget->children().isEmpty()) {
            if (widget->layout())
                readLayout(widget->layout());
            if (qobject_cast<const QGroupBox*>(widget))
                readGroupBox(widget);
            readBelow(widget);
        }
    }
}

void Labels::readLayout(const QLayout* layout)
{
    if (const auto* form = qobject_cast<const QFormLayout*>(layout))
        readForm(form);
    else if (const auto* grid = qobject_cast<const QGridLayout*>(layout))
        readGrid(grid);
    else if (const auto* box = qobject_cast<const QBoxLayout*>(layout))
        readBox(box);
    for (const QObject* child : layout->children()) {
        if (const auto* inner = qobject_cast<const QLayout*>(child))
            readLayout(inner);
    }
}

void Labels::readForm(const QFormLayout* form)
{
    for (int row = 0; row < form->rowCount(); ++row) {
        const QLayoutItem* label = form->itemAt(row, QFormLayout::LabelRole);
        if (const QWidget* widget = label ? const_cast<QLayoutItem*>(label)->widget() : nullptr)
            add(widget, form->itemAt(row, QFormLayout::FieldRole), Rule::Form);
    }
}

void Labels::readGrid(const QGridLayout* grid)
{
    const std::vector<Cell> cells = cellsOf(grid);
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const QLabel* label = cells[i - 1].row == cells[i].row ? labelIn(cells[i - 1].item) : nullptr;
        if (label)
            add(label, cells[i].item, Rule::Grid);
    }
}

void Labels::readBox(const QBoxLayout* box)
{
    if (box->direction() == QBoxLayout::TopToBottom || box->direction() == QBoxLayout::BottomToTop)
        return;
    const QLabel* label = nullptr;
    for (int i = 0; i < box->count(); ++i) {
        const QLayoutItem* item = box->itemAt(i);
        if (!isGap(item))
            continue;
        if (label)
            add(label, item, Rule::Box);
        label = labelIn(item);
    }
}

void Labels::readGroupBox(const QWidget* box)
{
    const QWidget* only = nullptr;
    for (const QObject* child : box->children()) {
        if (!child || !child->isWidgetType() || static_cast<const QWidget*>(child)->isHidden())
            continue;
        if (only)
            return;
        only = static_cast<const QWidget*>(child);
    }
    if (only)
        add(box, only, Rule::GroupBox);
}

void Labels::add(const QWidget* label, const QLayoutItem* field, Rule rule)
{
    if (const QWidget* widget = fieldOf(field))
        add(label, widget, rule);
}

void Labels::add(const QWidget* label, const QWidget* field, Rule rule)
{
    sources.push_back({field, label, rule});
}

} // namespace locate
