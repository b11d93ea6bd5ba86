#include "identify/objectname.h"

#include "identify/derivation.h"

#include <QtCore/QObject>

#include <cstring>

namespace identify {

const QLatin1String unnamed("unnamed");

QString getName(const QObject* object)
{
    const QString objectName = object->objectName();
    if (!objectName.isEmpty())
        return objectName;
    const Derivation* derivation = derivationFor(object);
    return derivation ? derivation->stem(object) + derivation->suffix : QString(unnamed);
}

bool hasName(const QObject* object, const QString& name)
{
    const QString objectName = object->objectName();
    if (!objectName.isEmpty())
        return objectName == name;
    const Derivation* derivation = derivationFor(object);
    return derivation ? derivation->hasName(object, name) : name == unnamed;
}

bool isA(const QObject* object, const char* className)
{
    return std::strcmp(object->metaObject()->className(), className) == 0;
}

} // namespace identify
