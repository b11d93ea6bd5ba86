#pragma once

#include "proxy/mousecommand.h"
#include "proxy/sterror.h"
#include "proxy/stinputcontrol.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

class QWidget;

// The base of all proxies, and the proxy of plain widgets. A proxy acts on one kind of widget as a user would. There is
// one object per registered class name; the registry binds it to the widget of each command anew. Every failure is an
// STError.
class STWidgetProxy : protected STInputControl
{
public:
    ~STWidgetProxy() override = default;

    // The widget's natural action. The base refuses: "\"activate\" is not implemented for widget of class ...".
    virtual void activate(const QVariant& value, const QVariant& option);
    // The same for a value whose item lookForItem() has found. Where activate() can choose another item, as its keys are
    // those that a test of the commands relies on, this one chooses the item or raises an error. The base: activate().
    virtual void activateFound(const QVariant& value, const QVariant& option);
    // Entering a value. The base refuses likewise.
    virtual void enter(const QVariant& value);
    // Plays a mouse command, the text "type:button:x:y:modifier". x and y are shares of the widget's width and height
    // from 0.0 to 1.0; 1.0 is one pixel beyond the edge, on which scripts rely. Without both the point is the centre,
    // without one of them that one is 0.5. A click stops the processing of events until the registry's next operation.
    virtual void mouseAction(const QVariant& command);
    // The same at a rectangle of the widget. With MouseStyle::LikeUser a move into a window is two, since the windowing
    // system reports no move where the mouse enters it, and a drag is dragMove() and dragRelease().
    enum class MouseStyle { Direct, LikeUser };
    void mouseActionIn(const QRect& rect, const QString& command, MouseStyle style);
    // Turns the wheel over the widget by a command "x:y:modifier:horizontal:vertical": a position as in mouse commands, and
    // steps to the left and upwards, or against that if negative. The last step is only posted.
    void wheelAction(const QString& command);
    // The properties that the proxy computes, and one of them. `argument` is what the test passed with the query,
    // invalid if nothing; the result is invalid for an unknown name.
    virtual QStringList pseudoPropertyNames();
    virtual QVariant pseudoProperty(const char* name, const QVariant& argument);

    // For the registry: the widget to serve, and the class name under which it is served.
    void bind(QWidget* widget, const char* className);
    // The bound widget. Raises an error when it is gone, or is not of the class (null for any).
    QWidget* checkedWidget(const char* className);
    // Where the mouse goes when the widget is activated: to a widget, the bound one or one that stands for it, at a point
    // in that one's coordinates. The base: to the centre.
    struct MousePlace
    {
        QWidget* widget;
        QPoint point;
    };
    virtual MousePlace activationPlace();
    // Raises the error of activate(value) for an item that is not there or cannot be used, as far as that shows without
    // opening, scrolling or selecting anything. Errors of the value itself, and of widgets without items, are left to
    // activate().
    virtual void lookForItem(const QVariant& value);
    // Where an item is: in the bound widget or in a part of it, at the visible part of its rectangle there.
    struct ItemArea
    {
        QPointer<QWidget> widget;
        QRect rect;
        bool isEnabled;
    };
    // Makes the item visible that activate() takes the same value for, and returns where it is: scrolls a view or tab
    // bar to it, and opens the items and menus that it is in. Raises an error for one that is not there or stays out of
    // sight. The base has no items and refuses.
    virtual ItemArea showItem(const QVariant& item);
    // Text and states of such an item, without scrolling or opening anything: "checkable", "checked", "partly checked",
    // "selected", "current", "disabled", "expanded", "collapsed"; of an entry of a menu "menu"; of a header "hidden",
    // "ascending", "descending". The base refuses.
    struct ItemState
    {
        QString text;
        QStringList states;
    };
    virtual ItemState itemState(const QVariant& item);
    // Makes the widget reachable for real input: shows, activates and raises its window and moves it onto the screen.
    // Waits until a window manager has made it active; the next move of the mouse waits until it is in front.
    void prepareWidget();
    // A built-in property ("pseudoPropertyNames", "propertyNames", "className", "silkClassName", "globalRect"), else
    // a pseudo-property, else a Qt property. Raises an error when none has a valid value.
    QVariant property(const char* name, const QVariant& argument);
    // Writes a Qt property. No command of the protocol does: to a test, properties are read-only.
    void setProperty(const char* name, const QVariant& value);

    // The text without its first "&", which marks the keyboard mnemonic.
    static QString stripMnemonic(const QString& text);

protected:
    // Raises the error for a value of the wrong type. `expected` lists the accepted types, null for none.
    [[noreturn]] void typeError(const char* expected);
    // Raises the error for a value out of range; the arguments fill the format that describes the range.
    template <class... Arguments>
    [[noreturn]] void rangeError(const char* format, const Arguments&... arguments)
    {
        raiseRangeError(proxy::formatMessage(QString::fromLatin1(format), {proxy::FormatArgument(arguments)...}));
    }
    // The same for a value that may be in range a little later; `reason` says what has to change.
    template <class... Arguments>
    [[noreturn]] void rangeNotYet(const QString& reason, const char* format, const Arguments&... arguments)
    {
        raiseRangeError(
            proxy::formatMessage(QString::fromLatin1(format), {proxy::FormatArgument(arguments)...}), reason);
    }
    // Plays one mouse command at a point in global coordinates; a click stops the processing of events.
    void playMouse(
        proxy::MouseCommandType type, const QPoint& point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // The centre of a rectangle of the bound widget, in global coordinates.
    QPoint globalCenter(const QRect& rect);
    // The same for a rectangle of any widget, such as a part of the bound one.
    static QPoint globalCenter(const QWidget* owner, const QRect& rect);
    // The operation's last input: a left click at a point in global coordinates. Only posted, here and in clickCenter()
    // and confirm(): the application handles it after the command, so that a dialog which it opens then does not delay
    // the reply.
    void finalClick(const QPoint& point);
    // A left click on the way to an item, at the centre of a rectangle of a widget. Raises an error if the mouse does
    // not reach the widget there.
    void clickOnTheWay(QWidget* owner, const QRect& rect);
    void clickCenter(const QWidget* owner, const QRect& rect);
    void confirm();

private:
    friend class STApplicationProxy; // starts the processing of events before every operation

    [[noreturn]] void raiseRangeError(const QString& range, const QString& reason = QString());
    void moveOntoScreen(QWidget* window);
    // Moves the mouse next to a point in the window, if it is outside the window.
    void enterWindow(const QPoint& point, Qt::KeyboardModifiers modifiers);

    QPointer<QWidget> widget;
    QString servedClassName;
};
