#pragma once

#include <QtCore/QHash>
#include <QtCore/QMetaObject>

namespace locate {

// Caches a value for each class during one walk through a window, in which most widgets are of a few classes. Not
// longer, since an application can unload the code of its classes.
template <class Value>
class ClassMemo
{
public:
    // The value of the class; `compute` makes it when the class is met first. The reference is valid until the next
    // call.
    template <class Compute>
    const Value& of(const QMetaObject* metaObject, Compute compute)
    {
        Recent& slot = recent[slotOf(metaObject)];
        if (metaObject != slot.metaObject)
            replace(slot, metaObject, compute);
        return slot.value;
    }

private:
    struct Recent
    {
        const QMetaObject* metaObject = nullptr;
        Value value{};
    };

    // Few windows have so many classes that two of them share a slot, so mostly all that is known is recent.
    template <class Compute>
    void replace(Recent& slot, const QMetaObject* metaObject, Compute compute)
    {
        if (slot.metaObject)
            known.insert(slot.metaObject, slot.value);
        const auto found = known.constFind(metaObject);
        slot.value = found != known.constEnd() ? *found : compute(metaObject);
        slot.metaObject = metaObject;
    }

    static const int slotBits = 4;

    // A multiplicative hash: addresses of meta-objects can be any distance apart.
    static quint32 slotOf(const QMetaObject* metaObject)
    {
        return (quint32(reinterpret_cast<quintptr>(metaObject) >> 3) * 2654435769U) >> (32 - slotBits);
    }

    QHash<const QMetaObject*, Value> known;
    Recent recent[1 << slotBits];
};

} // namespace locate
