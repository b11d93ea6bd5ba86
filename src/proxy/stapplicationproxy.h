#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <map>

class QWidget;

// The registry: owns one proxy per supported Qt class name, finds the proxy of a widget and runs an operation on it.
// `className` is the class under which to serve the widget: empty for the nearest registered class of the widget, or a
// registered class that it is of. Every failure is an STError.
class STApplicationProxy
{
public:
    STApplicationProxy();
    virtual ~STApplicationProxy();
    STApplicationProxy(const STApplicationProxy&) = delete;
    STApplicationProxy& operator=(const STApplicationProxy&) = delete;

    // The registered class name under which the widget is served. Raises "Widget is not derived from class ...".
    const char* resolveClassName(QWidget* widget, const QString& requested);
    // The proxy, bound to the widget. It is shared: the next call for its class binds the same object.
    STWidgetProxy* proxyFor(QWidget* widget, const QString& requested);

    // The acting operations refuse a disabled widget, then prepare it, then have the proxy act.
    void activate(QWidget* widget, const QString& className, const QVariant& value, const QVariant& option);
    // For a value whose item has been looked for.
    void activateFound(QWidget* widget, const QString& className, const QVariant& value, const QVariant& option);
    void enter(QWidget* widget, const QString& className, const QVariant& value);
    void mouseAction(QWidget* widget, const QString& className, const QVariant& command);
    // Scrolls to an item, or opens the menus that lead to it, and returns where it is: possibly in another widget,
    // which can be a window of its own, such as a menu.
    STWidgetProxy::ItemArea showItem(QWidget* widget, const QString& className, const QVariant& item);
    // Plays a mouse command there.
    void mouseActionAt(const STWidgetProxy::ItemArea& area, const QString& command);
    // Text and states of an item, also in a disabled widget.
    STWidgetProxy::ItemState itemState(QWidget* widget, const QString& className, const QVariant& item);
    // Turns the mouse's wheel over a widget, by a command "x:y:modifier:horizontal:vertical".
    void wheelAction(QWidget* widget, const QString& command);
    // Makes the widget reachable for real input, and nothing else.
    void prepare(QWidget* widget);
    // Reading prepares nothing, and reads disabled widgets too.
    QVariant property(QWidget* widget, const QString& className, const QString& name, const QVariant& argument);

private:
    STWidgetProxy* prepareProxy(QWidget* widget, const QString& className);

    struct TextOrder
    {
        bool operator()(const char* left, const char* right) const { return qstrcmp(left, right) < 0; }
    };
    // By the table's own texts, so that a lookup takes a class name as it is.
    std::map<const char*, STWidgetProxy*, TextOrder> proxies;
};
