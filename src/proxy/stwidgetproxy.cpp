#include "proxy/stwidgetproxy.h"

#include "compat/embedding.h"
#include "compat/reachable.h"
#include "compat/stacking.h"
#include "compat/variant.h"
#include "compat/waiting.h"
#include "compat/widgets.h"
#include "proxy/pseudoproperties.h"
#include "proxy/textparts.h"

#include <QGraphicsView>
#include <QMetaProperty>
#include <QWidget>

#include <algorithm>
#include <limits>

namespace {

const char notImplementedMessage[] = "\"%s\" is not implemented for widget of class \"%s\"";
const char noItemsMessage[] = "Items of a widget of class \"%s\" have no place for the mouse";
const char noStatesMessage[] = "Items of a widget of class \"%s\" have no states";
const char notReachedMessage[] = "The way to the item is not reached by the mouse";
const char wrongClassMessage[] = "Internal error, proxy for class \"%s\", connected to widget of class \"%s\".";
const char unknownPropertyMessage[] = "Unknown property \"%s\".";
const char setPropertyMessage[] = "Can't set property \"%s\"";
const char rangeMessage[] = "Type error: object \"%s\" of class \"%s\" accepts only values in the following range: %s.";

// Keeps a coordinate within the range of an int, beyond which an application can put the edges of a window.
int bounded(qint64 coordinate)
{
    const qint64 minimum = std::numeric_limits<int>::min();
    const qint64 maximum = std::numeric_limits<int>::max();
    return static_cast<int>(qBound(minimum, coordinate, maximum));
}

QPoint sum(const QPoint& a, const QPoint& b)
{
    return QPoint(bounded(qint64(a.x()) + b.x()), bounded(qint64(a.y()) + b.y()));
}

QPoint difference(const QPoint& a, const QPoint& b)
{
    return QPoint(bounded(qint64(a.x()) - b.x()), bounded(qint64(a.y()) - b.y()));
}

QRect rectAt(const QPoint& corner, const QSize& size)
{
    return QRect(corner, sum(corner, QPoint(size.width() - 1, size.height() - 1)));
}

// Counts the moves of the mouse that a widget gets.
class MoveCounter : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::MouseMove ? 1 : 0;
        return false;
    }
};

QStringList propertyNames(const QMetaObject* metaObject)
{
    QStringList names;
    for (int i = 0; i < metaObject->propertyCount(); ++i)
        names.append(QString::fromLatin1(metaObject->property(i).name()));
    return names;
}

// The properties that every proxy has. They win over pseudo-properties and Qt properties of the same name.
QStringList builtInNames();

const proxy::PseudoProperty<STWidgetProxy&, const QString&> builtInProperties[] = {
    {"propertyNames",
        [](STWidgetProxy& proxy, const QString&) -> QVariant {
            return propertyNames(proxy.checkedWidget(nullptr)->metaObject());
        }},
    {"pseudoPropertyNames",
        [](STWidgetProxy& proxy, const QString&) -> QVariant { return builtInNames() + proxy.pseudoPropertyNames(); }},
    {"className",
        [](STWidgetProxy& proxy, const QString&) -> QVariant {
            return QString::fromLatin1(proxy.checkedWidget(nullptr)->metaObject()->className());
        }},
    {"silkClassName", [](STWidgetProxy&, const QString& servedClassName) -> QVariant { return servedClassName; }},
    {"globalRect",
        [](STWidgetProxy& proxy, const QString&) -> QVariant {
            proxy.prepareWidget();
            QWidget* widget = proxy.checkedWidget(nullptr);
            compat::waitUntilInFront(widget, widget->mapToGlobal(widget->rect().center()));
            widget = proxy.checkedWidget(nullptr);
            return rectAt(widget->mapToGlobal(widget->rect().topLeft()), widget->rect().size());
        }},
};

QStringList builtInNames()
{
    return proxy::namesOf(builtInProperties);
}

} // namespace

void STWidgetProxy::activate(const QVariant&, const QVariant&)
{
    proxy::raiseError(notImplementedMessage, "activate", widget ? widget->metaObject()->className() : "unknown");
}

void STWidgetProxy::activateFound(const QVariant& value, const QVariant& option)
{
    activate(value, option);
}

void STWidgetProxy::enter(const QVariant&)
{
    proxy::raiseError(notImplementedMessage, "enter", widget ? widget->metaObject()->className() : "unknown");
}

void STWidgetProxy::mouseAction(const QVariant& command)
{
    if (compat::typeOf(command) != QMetaType::QString)
        typeError("string");
    mouseActionIn(checkedWidget(nullptr)->rect(), command.toString(), MouseStyle::Direct);
}

void STWidgetProxy::mouseActionIn(const QRect& rect, const QString& command, MouseStyle style)
{
    const int sectionCount = 5;
    const QStringList sections = proxy::firstParts(command, QLatin1Char(':'), sectionCount);
    const QPoint point
        = compat::mapToGlobal(checkedWidget(nullptr), proxy::pointAtShares(rect, sections.value(2), sections.value(3)));
    prepareWidget();
    const Qt::MouseButton button = proxy::mouseButton(sections.value(1));
    const Qt::KeyboardModifiers modifiers = proxy::keyboardModifier(sections.value(4));
    const proxy::MouseCommandType type = proxy::mouseCommandType(sections.value(0));
    if (style == MouseStyle::LikeUser && isDragging()) {
        if (type == proxy::MouseCommandType::Move)
            return dragMove(point, modifiers);
        if (type == proxy::MouseCommandType::Release)
            return dragRelease(point, button, modifiers);
    }
    if (style == MouseStyle::LikeUser && type == proxy::MouseCommandType::Move)
        enterWindow(point, modifiers);
    playMouse(type, point, button, modifiers);
}

void STWidgetProxy::wheelAction(const QString& command)
{
    const int sectionCount = 5;
    const QStringList sections = proxy::firstParts(command, QLatin1Char(':'), sectionCount);
    const QWidget* target = checkedWidget(nullptr);
    const QPoint point
        = compat::mapToGlobal(target, proxy::pointAtShares(target->rect(), sections.value(0), sections.value(1), 1));
    const Qt::KeyboardModifiers modifiers = proxy::keyboardModifier(sections.value(2));
    const int horizontal = proxy::wheelSteps(sections.value(3), 4);
    const int vertical = proxy::wheelSteps(sections.value(4), 5);
    mouseMove(point, modifiers);
    turnWheel(point, horizontal, vertical, modifiers);
}

void STWidgetProxy::enterWindow(const QPoint& point, Qt::KeyboardModifiers modifiers)
{
    QWidget* window = checkedWidget(nullptr)->window();
    if (window->geometry().contains(QCursor::pos()))
        return;
    // A menu ignores the first move after it was entered, and the windowing system may make one of two.
    const int moves = window->windowType() == Qt::Popup ? 2 : 1;
    const int maximumMilliseconds = 300;
    MoveCounter counter;
    window->installEventFilter(&counter);
    for (int i = 1; i <= moves; ++i) {
        mouseMove(point - QPoint(i, 0), modifiers);
        if (moves > 1)
            compat::processEventsUntil([&] { return counter.count >= i; }, maximumMilliseconds);
    }
}

void STWidgetProxy::playMouse(
    proxy::MouseCommandType type, const QPoint& point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    checkedWidget(nullptr); // preparing it runs the application's code, which may delete it
    switch (type) {
    case proxy::MouseCommandType::Press:
        mouseMove(point, modifiers);
        return mousePress(button, modifiers);
    case proxy::MouseCommandType::Release:
        mouseMove(point, modifiers);
        return mouseRelease(button, modifiers);
    case proxy::MouseCommandType::Click:
        stopProcessingEvents();
        return mouseClick(point, button, modifiers);
    case proxy::MouseCommandType::DoubleClick:
        stopProcessingEvents();
        return mouseDoubleClick(point, button, modifiers);
    case proxy::MouseCommandType::Move:
        return mouseMove(point, modifiers);
    }
}

QStringList STWidgetProxy::pseudoPropertyNames()
{
    return QStringList();
}

QVariant STWidgetProxy::pseudoProperty(const char*, const QVariant&)
{
    return QVariant();
}

void STWidgetProxy::bind(QWidget* target, const char* className)
{
    widget = target;
    dedicateMouseTo(target);
    servedClassName = QString::fromLatin1(className);
}

QWidget* STWidgetProxy::checkedWidget(const char* className)
{
    if (!widget)
        proxy::raiseError(proxy::deadWidgetMessage);
    if (className && !widget->inherits(className))
        proxy::raiseError(wrongClassMessage, className, widget->metaObject()->className());
    return widget;
}

STWidgetProxy::MousePlace STWidgetProxy::activationPlace()
{
    QWidget* target = checkedWidget(nullptr);
    return {target, target->rect().center()};
}

void STWidgetProxy::lookForItem(const QVariant&) { }

STWidgetProxy::ItemArea STWidgetProxy::showItem(const QVariant&)
{
    proxy::raiseError(noItemsMessage, checkedWidget(nullptr)->metaObject()->className());
}

STWidgetProxy::ItemState STWidgetProxy::itemState(const QVariant&)
{
    proxy::raiseError(noStatesMessage, checkedWidget(nullptr)->metaObject()->className());
}

void STWidgetProxy::prepareWidget()
{
    const QPointer<QWidget> window(checkedWidget(nullptr)->window());
    compat::forgetWindows();
    if (window->isMinimized()) {
        window->showNormal();
        syncEvents();
    }
    if (window)
        compat::activateWindow(window);
    if (window)
        window->raise();
    if (window)
        moveOntoScreen(window);
    QPointer<QWidget> shown(widget);
    if (QWidget* view = widget ? compat::viewAround(widget) : nullptr) {
        shown = view; // only its window is one for the windowing system
        compat::activateWindow(view);
        if (shown)
            shown->window()->raise();
    }
    syncEvents();
    if (widget && shown)
        compat::waitUntilActive(shown);
    awaitInFront(widget ? shown.data() : nullptr);
}

void STWidgetProxy::moveOntoScreen(QWidget* window)
{
    const QPointer<QWidget> guarded(window);
    const QWidget* target = checkedWidget(nullptr);
    const QRect rect = rectAt(target->mapToGlobal(QPoint(0, 0)), target->size());
    const QRect windowRect = rectAt(window->mapToGlobal(QPoint(0, 0)), window->size());
    if (!rect.intersects(windowRect))
        return;
    const QRect available = compat::availableGeometry(target);
    if (available.contains(rect))
        return;
    const QPoint corner = available.topLeft();
    const QPoint moved = sum(corner, difference(rect.topLeft(), windowRect.topLeft()));
    window->move(corner);
    // A difference used as a position: for a widget far inside a window larger than the screen it is what brings the
    // widget, not the window, to the screen's corner. Scripts rely on where the window ends up.
    if (guarded && !available.contains(rectAt(moved, rect.size())))
        window->move(difference(corner, moved));
}

QVariant STWidgetProxy::property(const char* name, const QVariant& argument)
{
    if (proxy::rowOf(builtInProperties, name))
        return proxy::valueOf(builtInProperties, name, *this, servedClassName);
    const QStringList pseudoNames = pseudoPropertyNames();
    const bool isPseudo = std::any_of(pseudoNames.begin(), pseudoNames.end(),
        [name](const QString& pseudoName) { return pseudoName == QLatin1String(name); });
    const QVariant value
        = isPseudo ? pseudoProperty(name, argument) : compat::readProperty(checkedWidget(nullptr), name);
    if (!value.isValid())
        proxy::raiseError(unknownPropertyMessage, name);
    return value;
}

void STWidgetProxy::setProperty(const char* name, const QVariant& value)
{
    if (!checkedWidget(nullptr)->setProperty(name, value))
        proxy::raiseError(setPropertyMessage, name);
}

void STWidgetProxy::typeError(const char* expected)
{
    const QWidget* target = checkedWidget(nullptr);
    const QString className = QString::fromLatin1(target->metaObject()->className());
    proxy::raiseError("%s",
        QString::fromLatin1("Type error: object \"%1\" of class \"%2\" accepts ").arg(target->objectName(), className)
            + QLatin1String(expected ? expected : "no parameter") + QLatin1Char('.'));
}

void STWidgetProxy::raiseRangeError(const QString& range, const QString& reason)
{
    const QWidget* target = checkedWidget(nullptr);
    proxy::raiseNotYet(reason, rangeMessage, target->objectName(), target->metaObject()->className(), range);
}

QString STWidgetProxy::stripMnemonic(const QString& text)
{
    const int mnemonic = text.indexOf(QLatin1Char('&'));
    return mnemonic < 0 ? text : QString(text).remove(mnemonic, 1);
}

QPoint STWidgetProxy::globalCenter(const QRect& rect)
{
    return globalCenter(checkedWidget(nullptr), rect);
}

QPoint STWidgetProxy::globalCenter(const QWidget* owner, const QRect& rect)
{
    return compat::mapToGlobal(owner, rect.center());
}

void STWidgetProxy::finalClick(const QPoint& point)
{
    stopProcessingEvents();
    mouseClick(point, Qt::LeftButton, Qt::NoModifier);
}

void STWidgetProxy::clickOnTheWay(QWidget* owner, const QRect& rect)
{
    const QPoint point = globalCenter(owner, rect);
    const QWidget* under = compat::widgetAt(point);
    if (under != owner && !(under && owner->isAncestorOf(under))) {
        const char* other = under ? under->metaObject()->className() : "another window";
        proxy::raiseNotYet(proxy::coveredBy(QLatin1String(other)), notReachedMessage);
    }
    mouseClick(point, Qt::LeftButton, Qt::NoModifier);
}

void STWidgetProxy::clickCenter(const QWidget* owner, const QRect& rect)
{
    finalClick(globalCenter(owner, rect));
}

void STWidgetProxy::confirm()
{
    stopProcessingEvents();
    keyClick(Qt::Key_Return, Qt::NoModifier);
}
