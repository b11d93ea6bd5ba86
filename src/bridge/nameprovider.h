#pragma once

#include "compat/export.h"

#include <QtCore/QString>

class QObject;

namespace LmSquishProxy {

// Gives names to objects that have no object name of their own. The bridge never owns one.
class NameProvider
{
public:
    virtual QString name(const QObject* object) = 0;

protected:
    ~NameProvider() = default;
};

// Installs the process-wide provider; null removes it. It must live until it is removed or replaced.
QTDRIVER_EXPORT void setNameProvider(NameProvider* provider);
NameProvider* nameProvider();

// The object's objectName() if it was ever set, even to the empty text; else the provider's answer; else
// null.
QString bridgeName(const QObject* object);

} // namespace LmSquishProxy
