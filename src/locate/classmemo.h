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
        Recent& place = recent[placeOf(metaObject)];
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

    static const int placeBits = 4;

    // Multiplication spreads them: the meta-objects of two classes that a window has many of may be any distance apart.
    static quint32 placeOf(const QMetaObject* metaObject)
    {
        return (quint32(reinterpret_cast<quintptr>(metaObject) >> 3) * 2654435769U) >> (32 - placeBits);
    }

    QHash<const QMetaObject*, Value> known;
    Recent recent[1 << placeBits];
};

} // namespace locate
