#pragma once

#include <QLatin1String>

/// Gives \a object the object name by which a test finds it, and returns it.
template <typename Object>
Object* named(Object* object, const char* name)
{
    object->setObjectName(QLatin1String(name));
    return object;
}
