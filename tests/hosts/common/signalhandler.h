#pragma once

#include <QtCore/QObject>

#include <functional>
#include <utility>

// Runs a function at a signal, for Qt 4 too. A child of the sender.
class SignalHandler : public QObject
{
    Q_OBJECT

public:
    using Function = std::function<void(const QString& argument)>;

    SignalHandler(QObject* sender, Function handler)
        : QObject(sender)
        , function(std::move(handler))
    {
    }

public Q_SLOTS:
    // Copies: the handler may delete the sender, and with it this object.
    void handle() { call(QString()); }
    void handleBool(bool value) { call(QLatin1String(value ? "true" : "false")); }
    void handleInt(int value) { call(QString::number(value)); }
    void handleText(const QString& value) { call(value); }

private:
    void call(const QString& argument)
    {
        const Function copy = function;
        copy(argument);
    }

    Function function;
};
