#include "record/itemat.h"

#include "compat/variant.h"
#include "compat/widgets.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/shown.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStringList>
#include <QTabBar>
#include <QTableView>
#include <QTreeView>

namespace record {

namespace {

const int maximumSteps = 100;

void addTexts(locate::JsonObject& object, const char* key, const QStringList& texts)
{
    QByteArray& json = object.field(key);
    json += '[';
    for (int i = 0; i < texts.size(); ++i) {
        if (i > 0)
            json += ',';
        locate::appendJsonText(json, texts.at(i));
    }
    json += ']';
}

QByteArray sectionAt(QHeaderView* header, const QPoint& position)
{
    const QPointer<QHeaderView> guard(header);
    const int section = header->logicalIndexAt(position);
    if (!guard || !header->model() || section < 0)
        return QByteArray();
    const QString text = compat::textOf(header->model()->headerData(section, header->orientation()));
    QByteArray json;
    if (guard) {
        locate::JsonObject object(json);
        object.add("section", section);
        object.add("orientation", header->orientation() == Qt::Horizontal ? "horizontal" : "vertical");
        object.addUnlessEmpty("text", text);
    }
    return json;
}

// The texts of the first column from the top of a tree down to the row; the item's own text in other views.
QStringList pathTo(const QAbstractItemView& view, const QModelIndex& index, const QPointer<QAbstractItemView>& guard)
{
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    QStringList path;
    QPersistentModelIndex step = tree ? index.sibling(index.row(), 0) : index;
    for (int steps = 0; guard && step.isValid() && steps < maximumSteps; ++steps) {
        path.prepend(compat::textOf(step.data(Qt::DisplayRole)));
        if (!tree || !guard || !step.isValid())
            break;
        const QModelIndex parent = step.parent();
        step = guard && parent != view.rootIndex() ? parent : QModelIndex();
    }
    return path;
}

QByteArray rowAt(QAbstractItemView* view, const QPoint& position)
{
    const QPointer<QAbstractItemView> guard(view);
    const QPersistentModelIndex index = view->indexAt(position);
    if (!guard || !index.isValid())
        return QByteArray();
    const QStringList path = pathTo(*view, index, guard);
    const QString text = guard && index.isValid() ? compat::textOf(index.data(Qt::DisplayRole)) : QString();
    QStringList headers;
    if (guard && index.isValid() && qobject_cast<QTableView*>(view)) {
        const QPointer<QAbstractItemModel> model(view->model());
        headers.append(compat::textOf(model->headerData(index.row(), Qt::Vertical)));
        headers.append(
            model && index.isValid() ? compat::textOf(model->headerData(index.column(), Qt::Horizontal)) : QString());
    }
    if (!guard || !index.isValid())
        return QByteArray();
    QByteArray json;
    {
        locate::JsonObject object(json);
        addTexts(object, "path", path);
        object.addUnlessEmpty("text", text);
        object.add("row", index.row());
        object.add("column", index.column());
        if (!headers.isEmpty())
            addTexts(object, "headers", headers);
    }
    return json;
}

QByteArray tabAt(const QTabBar& bar, const QPoint& position)
{
    const int tab = bar.tabAt(position);
    QByteArray json;
    if (tab >= 0) {
        locate::JsonObject object(json);
        object.addUnlessEmpty("text", locate::shownText(bar.tabText(tab), locate::Markup::Mnemonics));
        object.add("row", tab);
    }
    return json;
}

// The text by which menu paths name an entry.
QString entryText(const QAction* action)
{
    QString text = action->text();
    text.remove(text.indexOf(QLatin1Char('&')), text.contains(QLatin1Char('&')) ? 1 : 0);
    return text.simplified();
}

// The menu, menu bar or button that opens a menu; null where nothing that is seen does.
QWidget* openerOf(const QMenu& menu)
{
    const QWidgetList widgets = compat::widgetsOf(*menu.menuAction());
    for (QWidget* widget : widgets) {
        const bool opens
            = qobject_cast<QMenu*>(widget) || qobject_cast<QMenuBar*>(widget) || qobject_cast<QAbstractButton*>(widget);
        if (opens && widget->isVisible())
            return widget;
    }
    return nullptr;
}

} // namespace

QByteArray menuItem(QWidget* holder, const QAction* action)
{
    QStringList path(entryText(action));
    auto* menu = qobject_cast<QMenu*>(holder);
    QWidget* outermost = holder;
    for (int steps = 0; menu && steps < maximumSteps; ++steps) {
        QWidget* opener = openerOf(*menu);
        if (!opener)
            break;
        outermost = opener;
        if (!qobject_cast<QAbstractButton*>(opener))
            path.prepend(entryText(menu->menuAction()));
        menu = qobject_cast<QMenu*>(opener);
    }
    QByteArray json;
    {
        locate::JsonObject object(json);
        addTexts(object, "path", path);
        object.addUnlessEmpty("action", action->objectName());
        if (!qobject_cast<QMenu*>(outermost)) {
            object.add("opener", locate::References::all().numberOf(outermost));
            object.add("window", locate::References::all().numberOf(outermost->window()));
        }
        if (action->menu())
            object.field("menu") += "true";
        if (action->isCheckable())
            object.field("checkable") += "true";
    }
    return json;
}

QByteArray itemAt(QWidget* widget, const QPoint& position)
{
    if (auto* header = qobject_cast<QHeaderView*>(widget))
        return sectionAt(header, position);
    if (auto* view = qobject_cast<QAbstractItemView*>(widget))
        return rowAt(view, position);
    if (const auto* bar = qobject_cast<QTabBar*>(widget))
        return tabAt(*bar, position);
    const QAction* action = nullptr;
    if (const auto* menu = qobject_cast<QMenu*>(widget))
        action = menu->actionAt(position);
    else if (const auto* bar = qobject_cast<QMenuBar*>(widget))
        action = bar->actionAt(position);
    return action && !action->isSeparator() ? menuItem(widget, action) : QByteArray();
}

} // namespace record
