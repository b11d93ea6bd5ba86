#include "locate/references.h"

namespace locate {

References& References::all()
{
    static auto* const references = new References; // never deleted: the last command may come as the process ends
    return *references;
}

qint64 References::numberOf(const QWidget* widget)
{
    const auto known = entries.constFind(widget);
    if (known != entries.constEnd() && known->widget)
        return known->number;
    if (entries.size() >= cleanupThreshold)
        forgetTheDead();
    Entry& entry = entries[widget];
    widgets.remove(entry.number);
    entry.widget = const_cast<QWidget*>(widget);
    entry.number = ++last;
    widgets.insert(entry.number, widget);
    return entry.number;
}

QWidget* References::widgetOf(qint64 number) const
{
    const auto found = entries.constFind(widgets.value(number));
    return found != entries.constEnd() ? found->widget.data() : nullptr;
}

bool References::isKnown(const QObject* object) const
{
    return entries.contains(static_cast<const QWidget*>(object));
}

void References::forgetTheDead()
{
    for (auto entry = entries.begin(); entry != entries.end();) {
        if (entry->widget) {
            ++entry;
            continue;
        }
        widgets.remove(entry->number);
        entry = entries.erase(entry);
    }
    const int roomForLiving = 2;
    cleanupThreshold = qMax(cleanupThreshold, roomForLiving * static_cast<int>(entries.size()));
}

} // namespace locate
