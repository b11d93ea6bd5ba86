#pragma once

#include <QtCore/QHash>
#include <QtCore/QMetaObject>

namespace locate {

// Remembers a value for each class during one walk through a window: most widgets are of one of the few classes before, and
// nearly all of one that was met. An application can unload the code of its classes, so it is not kept.
template <class Value>
class ClassMemo
{
public:
    // The value of the class; `tell` makes it when the class is met first. Good until the next call.
    template <class Tell>
    const Value& of(const QMetaObject* metaObject, Tell tell)
    {
        Recent& place = recent[(reinterpret_cast<quintptr>(metaObject) / sizeof(QMetaObject)) % recentCount];
        if (metaObject != place.metaObject) {
            const auto found = known.constFind(metaObject);
            place.value = found != known.constEnd() ? *found : *known.insert(metaObject, tell(metaObject));
            place.metaObject = metaObject;
        }
        return place.value;
    }

private:
    struct Recent
    {
        const QMetaObject* metaObject = nullptr;
        Value value{};
    };

    static const quintptr recentCount = 16;

    QHash<const QMetaObject*, Value> known;
    Recent recent[recentCount];
};

} // namespace locate
