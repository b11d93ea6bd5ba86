#pragma once

#include "proxy/sterror.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

// The outcome of a call of the agent: its result, or the message of its error.
struct Served
{
    QVariant value;
    QString error;
};

template <class Call>
Served served(Call call)
{
    Served outcome;
    try {
        outcome.value = QVariant::fromValue(call());
    } catch (const STError& error) {
        outcome.error = error.message;
    }
    return outcome;
}
