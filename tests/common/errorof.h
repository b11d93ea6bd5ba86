#pragma once

#include "proxy/sterror.h"

// The message of the error that an operation raises, empty for none.
template <class Operation>
QString errorOf(Operation operation)
{
    try {
        operation();
    } catch (const STError& error) {
        return error.message;
    }
    return QString();
}
