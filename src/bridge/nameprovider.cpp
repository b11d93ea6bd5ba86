#include "bridge/nameprovider.h"

#include <QtCore/QObject>

namespace LmSquishProxy {

namespace {

NameProvider* installedProvider = nullptr;

} // namespace

void setNameProvider(NameProvider* provider)
{
    installedProvider = provider;
}

NameProvider* nameProvider()
{
    return installedProvider;
}

QString bridgeName(const QObject* object)
{
    const QString objectName = object->objectName();
    return objectName.isNull() && installedProvider ? installedProvider->name(object) : objectName;
}

} // namespace LmSquishProxy
