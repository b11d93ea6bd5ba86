#include "locate/snapshot.h"

#include "locate/description.h"
#include "locate/items.h"
#include "locate/json.h"
#include "locate/values.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <limits>
#include <vector>

namespace locate {

namespace {

struct Entry
{
    int depth = 0;
    QByteArray fields; // without the braces
    QPointer<QWidget> holder; // of the items that are still to be read
    bool hasItems = false;
};

// Describes the widgets. None of the application's code runs, so all of them stay.
class Walk
{
public:
    explicit Walk(const QWidget* top)
        : describer(top->window())
    {
    }

    void visit(QWidget* widget, int depth)
    {
        Entry entry;
        entry.depth = depth;
        {
            JsonObject object(entry.fields);
            describer.addFields(object, widget);
            addValue(object, widget);
        }
        entry.fields.chop(1);
        entry.hasItems = holdsItems(widget);
        if (entry.hasItems)
            entry.holder = widget;
        entries.push_back(entry);
        for (QObject* child : widget->children()) {
            auto* inner = child->isWidgetType() ? static_cast<QWidget*>(child) : nullptr;
            if (inner && inner->isVisible() && !inner->isWindow())
                visit(inner, depth + 1);
        }
    }

    std::vector<Entry> entries;

private:
    WidgetDescriber describer;
};

void appendTexts(QByteArray& json, const QStringList& texts)
{
    json += '[';
    for (int i = 0; i < texts.size(); ++i) {
        if (i > 0)
            json += ',';
        appendJsonText(json, texts.at(i));
    }
    json += ']';
}

void appendItems(QByteArray& json, const std::vector<Item>& items)
{
    json += '[';
    for (const Item& item : items) {
        if (!json.endsWith('['))
            json += ',';
        JsonObject object(json);
        appendTexts(object.field("texts"), item.texts);
        if (item.depth > 0)
            object.add("depth", item.depth);
        if (!item.states.isEmpty())
            appendTexts(object.field("states"), item.states);
    }
    json += ']';
}

// Adds the items to the fields of their widget, which may die by that.
void readItems(Entry& entry)
{
    const Items items = itemsOf(entry.holder);
    if (!items.header.isEmpty())
        appendTexts(entry.fields.append(",\"header\":"), items.header);
    if (!items.shown.empty())
        appendItems(entry.fields.append(",\"items\":"), items.shown);
    if (items.leftOut > 0)
        entry.fields.append(",\"more\":").append(QByteArray::number(items.leftOut));
}

// Ends the objects from the last one that was written, at `from`, up to the depth `to`.
void closeObjects(QByteArray& json, int from, int to)
{
    for (int depth = from; depth >= to; --depth)
        json += depth > to ? "}]" : "}";
}

// Puts the entries, parents before children, into each other. Those whose widget has died are left out with all below.
QByteArray nested(const std::vector<Entry>& entries)
{
    QByteArray json;
    int last = -1;
    int dead = std::numeric_limits<int>::max();
    for (const Entry& entry : entries) {
        if (entry.depth > dead)
            continue;
        dead = entry.hasItems && !entry.holder ? entry.depth : std::numeric_limits<int>::max();
        if (dead == entry.depth)
            continue;
        if (entry.depth > last) {
            json += last < 0 ? "" : ",\"children\":[";
        } else {
            closeObjects(json, last, entry.depth);
            json += ',';
        }
        json += entry.fields;
        last = entry.depth;
    }
    if (last >= 0)
        closeObjects(json, last, 0);
    return json;
}

} // namespace

QByteArray snapshot(QWidget* widget)
{
    std::vector<Entry> entries;
    {
        Walk walk(widget);
        walk.visit(widget, 0);
        entries.swap(walk.entries);
    }
    for (Entry& entry : entries) {
        if (entry.holder)
            readItems(entry);
    }
    return nested(entries);
}

} // namespace locate
