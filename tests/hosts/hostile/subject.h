#pragma once

#include <QApplication>
#include <QPointer>
#include <QWidget>

// An object to come back to, if it lives then. A QPointer alone does not tell: to a widget that is just being destroyed Qt 4
// gives one that is never cleared.
class Subject
{
public:
    Subject(QObject* object)
        : pointer(object)
        , address(object)
        , isWidget(object->isWidgetType())
    {
    }

    // The object, or null.
    QObject* get() const
    {
        if (isWidget && !QApplication::allWidgets().contains(static_cast<QWidget*>(address)))
            return nullptr;
        return isWidget ? address : pointer.data();
    }

private:
    QPointer<QObject> pointer;
    QObject* address;
    bool isWidget;
};
