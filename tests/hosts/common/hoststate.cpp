#include "hoststate.h"

#include "compat/variant.h"
#include "latin1.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QStyle>
#include <QTreeView>
#include <QtCore/QMetaProperty>
#include <QtCore/QStringList>

#include <algorithm>

namespace {

const int mostItems = 500;

QString nameOf(const QObject* object)
{
    if (!object)
        return latin1("none");
    return object->objectName().isEmpty() ? latin1(object->metaObject()->className()) : object->objectName();
}

QString valueText(const QVariant& value)
{
    switch (compat::typeOf(value)) {
    case QMetaType::QRect: {
        const QRect rect = value.toRect();
        return QString::fromLatin1("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    }
    case QMetaType::QPoint:
        return QString::fromLatin1("%1,%2").arg(value.toPoint().x()).arg(value.toPoint().y());
    case QMetaType::QSize:
        return QString::fromLatin1("%1x%2").arg(value.toSize().width()).arg(value.toSize().height());
    case QMetaType::QStringList:
        return value.toStringList().join(QLatin1String("|"));
    default:
        return compat::textOf(value);
    }
}

// A hidden window that was shown before differs from one that never was, such as a menu's place
// and size. Asking for a size hint makes a menu that was never open lay out its items.
bool isAsked(const QString& property, const QWidget* widget)
{
    static const QStringList ofVisible
        = QString::fromLatin1("geometry frameGeometry normalGeometry pos x y frameSize size "
                              "width height rect childrenRect childrenRegion isActiveWindow")
              .split(QLatin1Char(' '));
    return !property.endsWith(QLatin1String("izeHint"))
        && (!widget || widget->isVisible() || !ofVisible.contains(property));
}

QString propertyText(const QObject* object, const char* property)
{
    try {
        return valueText(compat::readProperty(object, property));
    } catch (...) {
        return latin1("an exception");
    }
}

void addProperties(HostState::Values& values, const QString& name, const QObject* object)
{
    const auto* widget = qobject_cast<const QWidget*>(object);
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const char* property = metaObject->property(i).name();
        if (isAsked(latin1(property), widget))
            values.insert(name + QLatin1Char(' ') + latin1(property), propertyText(object, property));
    }
}

bool isHidden(const QAbstractItemView* view, const QModelIndex& index)
{
    if (const auto* list = qobject_cast<const QListView*>(view))
        return list->isRowHidden(index.row());
    if (const auto* tree = qobject_cast<const QTreeView*>(view))
        return tree->isRowHidden(index.row(), index.parent());
    return false;
}

QString itemText(const QAbstractItemView* view, const QModelIndex& index)
{
    const auto* tree = qobject_cast<const QTreeView*>(view);
    return QString::fromLatin1("'%1' check %2 flags %3 selected %4 hidden %5 expanded %6")
        .arg(index.data().toString())
        .arg(index.data(Qt::CheckStateRole).toInt())
        .arg(int(index.flags()))
        .arg(view->selectionModel() && view->selectionModel()->isSelected(index))
        .arg(isHidden(view, index))
        .arg(tree && tree->isExpanded(index));
}

void addItems(
    HostState::Values& values, const QString& name, const QAbstractItemView* view, const QModelIndex& parent, int& left)
{
    const QAbstractItemModel* model = view->model();
    const int rows = model->rowCount(parent);
    values.insert(name + QLatin1String(" rows"), QString::number(rows));
    values.insert(name + QLatin1String(" columns"), QString::number(model->columnCount(parent)));
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < model->columnCount(parent) && --left > 0; ++column) {
            const QModelIndex index = model->index(row, column, parent);
            const QString item = QString::fromLatin1("%1/%2;%3").arg(name).arg(row).arg(column);
            values.insert(item, itemText(view, index));
            if (index.isValid())
                addItems(values, item, view, index, left);
        }
    }
}

void addView(HostState::Values& values, const QString& name, const QAbstractItemView* view)
{
    if (!view->model())
        return;
    const QModelIndex current = view->currentIndex();
    values.insert(
        name + QLatin1String(" current"), QString::fromLatin1("%1;%2").arg(current.row()).arg(current.column()));
    if (const auto* header = qobject_cast<const QHeaderView*>(view)) {
        for (int i = 0; i < std::min(header->count(), mostItems); ++i)
            values.insert(
                QString::fromLatin1("%1 size of %2").arg(name).arg(i), QString::number(header->sectionSize(i)));
        return;
    }
    int left = mostItems;
    addItems(values, name + QLatin1String(" items"), view, view->rootIndex(), left);
}

void addObject(HostState::Values& values, const QString& place, const QObject* object)
{
    const auto* widget = qobject_cast<const QWidget*>(object);
    if (!widget && !qobject_cast<const QAction*>(object))
        return;
    QString name = place + nameOf(object);
    while (values.contains(name + QLatin1String(" objectName")))
        name += QLatin1Char('\'');
    addProperties(values, name, object);
    if (const auto* view = qobject_cast<const QAbstractItemView*>(object))
        addView(values, name, view);
    const QObjectList& children = object->children();
    for (const QObject* child : children)
        addObject(values, name + QLatin1Char('/'), child);
}

QString numbers(const QSet<int>& held)
{
    QStringList found;
    for (const int number : held)
        found.append(QString::number(number));
    found.sort();
    return found.join(QLatin1String(" "));
}

QSet<QWidget*> visibleWindows()
{
    QSet<QWidget*> visible;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* topLevel : topLevels) {
        if (topLevel->isVisible())
            visible.insert(topLevel);
    }
    return visible;
}

bool isBefore(const QWidget* one, const QWidget* other)
{
    return nameOf(one) < nameOf(other);
}

bool isInPopup(const QObject* object)
{
    return object->isWidgetType() && static_cast<const QWidget*>(object)->window()->windowType() == Qt::Popup;
}

} // namespace

HostState::HostState()
    : windows(visibleWindows())
    , activeWindow(QApplication::activeWindow())
    , focus(QApplication::focusWidget())
    , cursor(QCursor::pos())
{
    qApp->installEventFilter(this);
}

void HostState::addApplication(Values& values) const
{
    values.insert(latin1("popup"), nameOf(QApplication::activePopupWidget()));
    values.insert(latin1("modal widget"), nameOf(QApplication::activeModalWidget()));
    values.insert(latin1("active window"), nameOf(QApplication::activeWindow()));
    values.insert(latin1("focus"), nameOf(QApplication::focusWidget()));
    values.insert(latin1("mouse grabber"), nameOf(QWidget::mouseGrabber()));
    values.insert(latin1("keyboard grabber"), nameOf(QWidget::keyboardGrabber()));
    values.insert(latin1("override cursor"), QString::number(QApplication::overrideCursor() != nullptr));
    values.insert(latin1("buttons"), QString::number(int(QApplication::mouseButtons())));
    values.insert(latin1("modifiers"), QString::number(int(QApplication::keyboardModifiers())));
    values.insert(latin1("held buttons"), numbers(heldButtons));
    values.insert(latin1("held keys"), numbers(heldKeys));
    values.insert(latin1("cursor"), valueText(QCursor::pos()));
    const QClipboard* clipboard = QApplication::clipboard();
    values.insert(latin1("clipboard"), clipboard->text());
    values.insert(latin1("selection"), clipboard->text(QClipboard::Selection));
    values.insert(latin1("layout direction"), QString::number(int(QApplication::layoutDirection())));
    values.insert(latin1("style"), QApplication::style()->objectName());
}

HostState::Values HostState::values() const
{
    Values values;
    addApplication(values);
    QWidgetList topLevels = QApplication::topLevelWidgets();
    std::sort(topLevels.begin(), topLevels.end(), isBefore);
    for (const QWidget* window : topLevels) {
        if (!window->parent())
            addObject(values, QString(), window);
    }
    return values;
}

void HostState::restore() const
{
    const int mostPopups = 20;
    for (int i = 0; i < mostPopups && QApplication::activePopupWidget(); ++i)
        QApplication::activePopupWidget()->close();
    const QSet<QWidget*> added = visibleWindows() - windows;
    for (QWidget* window : added) {
        // The function that runs a modal window has made it, and deletes it.
        const bool isModal = window->isModal();
        window->close();
        if (!isModal)
            window->deleteLater();
    }
    const QWidget* active = QApplication::activeWindow();
    if (activeWindow && activeWindow != active) {
        activeWindow->activateWindow();
        // Qt can lose track of the focus when popups open and close in quick succession: the window has it already, and
        // Qt is never told.
        if (!active || !active->isVisible())
            QApplication::setActiveWindow(activeWindow);
    }
    if (focus && focus != QApplication::focusWidget())
        focus->setFocus();
    if (QCursor::pos() != cursor)
        QCursor::setPos(cursor);
}

QStringList HostState::changesSince(const Values& before) const
{
    const Values now = values();
    QStringList changes;
    // Both are in the order of their names.
    Values::const_iterator old = before.constBegin();
    Values::const_iterator current = now.constBegin();
    while (old != before.constEnd() || current != now.constEnd()) {
        const bool isGone = current == now.constEnd() || (old != before.constEnd() && old.key() < current.key());
        const bool isNew = old == before.constEnd() || (current != now.constEnd() && current.key() < old.key());
        const QString name = isNew ? current.key() : old.key();
        const QString was = isNew ? QString() : old.value();
        const QString is = isGone ? QString() : current.value();
        if (isGone || isNew || was != is)
            changes.append(QString::fromLatin1("%1 was '%2', is '%3'").arg(name, was, is));
        if (!isNew)
            ++old;
        if (!isGone)
            ++current;
    }
    return changes;
}

bool HostState::eventFilter(QObject* watched, QEvent* event)
{
    // Each event comes once for the widget, and on Qt 5 and 6 once for its window, too.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        heldButtons.insert(int(static_cast<QMouseEvent*>(event)->button()));
        break;
    case QEvent::MouseButtonRelease:
        heldButtons.remove(int(static_cast<QMouseEvent*>(event)->button()));
        break;
    case QEvent::KeyPress:
        if (!isInPopup(watched)) // a key that closes it may leave nobody to see the release
            heldKeys.insert(static_cast<QKeyEvent*>(event)->key());
        break;
    case QEvent::KeyRelease:
        heldKeys.remove(static_cast<QKeyEvent*>(event)->key());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
