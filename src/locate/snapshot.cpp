#include "locate/snapshot.h"

#include "locate/description.h"
#include "locate/items.h"
#include "locate/json.h"
#include "locate/values.h"

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <limits>
#include <vector>

namespace locate {

namespace {

struct Entry
{
    int depth;
    int begin; // of its fields among those of all
    int end;
    QPointer<QWidget> holder; // of items
    bool hasItems;
    QByteArray items; // more fields
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
        const ClassRow& row = rowFor(widget);
        Entry entry = {
            depth, static_cast<int>(fields.size()), 0, row.holdsItems ? widget : nullptr, row.holdsItems, QByteArray()};
        {
            JsonObject object(fields);
            describer.addFields(object, widget);
            if (row.addValue)
                row.addValue(object, widget);
        }
        entry.end = static_cast<int>(fields.size()) - 1; // the brace comes after the children
        entries.push_back(entry);
        for (QObject* child : widget->children()) {
            auto* inner = child && child->isWidgetType() ? static_cast<QWidget*>(child) : nullptr;
            if (inner && inner->isVisible() && !inner->isWindow())
                visit(inner, depth + 1);
        }
    }

    std::vector<Entry> entries;
    QByteArray fields; // of all, one after the other

private:
    struct ClassRow
    {
        ValueWriter addValue;
        bool holdsItems;
    };

    // Each class is looked up once.
    const ClassRow& rowFor(const QWidget* widget)
    {
        const auto found = rows.find(widget->metaObject());
        if (found != rows.end())
            return *found;
        return *rows.insert(widget->metaObject(), {valueWriterFor(widget), holdsItems(widget)});
    }

    WidgetDescriber describer;
    QHash<const QMetaObject*, ClassRow> rows;
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

// Reads the items of a widget, which runs code of the application that may delete it.
void readItems(Entry& entry)
{
    const Items items = itemsOf(entry.holder);
    if (!items.value.isEmpty())
        appendJsonText(entry.items.append(",\"value\":"), items.value);
    if (!items.header.isEmpty())
        appendTexts(entry.items.append(",\"header\":"), items.header);
    if (!items.shown.empty())
        appendItems(entry.items.append(",\"items\":"), items.shown);
    if (items.leftOut > 0)
        entry.items.append(",\"more\":").append(QByteArray::number(items.leftOut));
}

// Ends the objects from the last one that was written, at `from`, up to the depth `to`.
void closeObjects(QByteArray& json, int from, int to)
{
    for (int depth = from; depth >= to; --depth)
        json += depth > to ? "}]" : "}";
}

// Puts the entries, parents before children, into each other. Those whose widget has died are left out with all below.
QByteArray nested(const std::vector<Entry>& entries, const QByteArray& fields)
{
    QByteArray json;
    json.reserve(static_cast<int>(fields.size() + entries.size() * 16));
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
        json.append(fields.constData() + entry.begin, entry.end - entry.begin).append(entry.items);
        last = entry.depth;
    }
    if (last >= 0)
        closeObjects(json, last, 0);
    return json;
}

enum class Contents { Left, Read };

QByteArray described(QWidget* widget, Contents contents)
{
    std::vector<Entry> entries;
    QByteArray fields;
    {
        Walk walk(widget);
        walk.visit(widget, 0);
        entries.swap(walk.entries);
        fields.swap(walk.fields);
    }
    for (Entry& entry : entries) {
        if (entry.holder && contents == Contents::Read)
            readItems(entry);
    }
    return nested(entries, fields);
}

} // namespace

QByteArray snapshot(QWidget* widget)
{
    return described(widget, Contents::Read);
}

QByteArray snapshotWithoutItems(QWidget* widget)
{
    return described(widget, Contents::Left);
}

} // namespace locate
