#pragma once

#include <QtCore/QHash>

struct QMetaObject;

namespace locate {

// Remembers a value for each class during one walk through a window: most widgets are of the class of the one before, and nearly all
// of one that was met. An application can unload the code of its classes, so it is not kept.
template <class Value>
class ClassMemo
{
public:
    // The value of the class; `tell` makes it when the class is met first.
    template <class Tell>
    const Value& of(const QMetaObject* metaObject, Tell tell)
    {
        if (metaObject == last)
            return lastValue;
        const auto found = known.constFind(metaObject);
        lastValue = found != known.constEnd() ? *found : *known.insert(metaObject, tell(metaObject));
        last = metaObject;
        return lastValue;
    }

private:
    QHash<const QMetaObject*, Value> known;
    const QMetaObject* last = nullptr;
    Value lastValue{};
};

} // namespace locate
