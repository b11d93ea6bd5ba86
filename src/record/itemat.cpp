#include "record/itemat.h"

#include "compat/variant.h"
#include "compat/widgets.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/shown.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStringList>
#include <QStyle>
#include <QStyleOption>
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

// The place in the item, in percent of its width and height.
void addPlaceWithin(locate::JsonObject& object, const QRect& item, const QPoint& position)
{
    const QPoint place = position - item.topLeft();
    QByteArray& json = object.field("within");
    json += '[';
    locate::appendNumber(json, 100 * place.x() / qMax(1, item.width()));
    json += ',';
    locate::appendNumber(json, 100 * place.y() / qMax(1, item.height()));
    json += ']';
}

// Whether a press there changes the size of a section: the header shows the cursor for that.
bool isAtEdge(const QHeaderView& header)
{
    const Qt::CursorShape shape = header.cursor().shape();
    return shape == Qt::SplitHCursor || shape == Qt::SplitVCursor;
}

const char* const checkWords[] = {"unchecked", "partly checked", "checked"};

// The state of the check box of an item; null where none is at the position. The model is asked last, since that runs its code.
const char* checkAt(const QAbstractItemView& view, const QModelIndex& index, const QRect& rect, const QPoint& position)
{
    if (!compat::checkBoxOfItem(view, rect).contains(position))
        return nullptr;
    const QVariant state = index.data(Qt::CheckStateRole);
    const Qt::ItemFlags needed = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    return state.isValid() && (index.flags() & needed) == needed ? checkWords[qBound(0, state.toInt(), 2)] : nullptr;
}

// Whether the arrow beside an item of a tree, which opens and closes it, is at the position; null where it is not.
const char* branchAt(const QAbstractItemView& view, const QModelIndex& index, const QRect& rect, const QPoint& position)
{
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    const int distance = qMax(rect.left() - position.x(), position.x() - rect.right());
    if (!tree || index.column() != tree->header()->logicalIndex(0) || distance <= 0 || distance > tree->indentation())
        return nullptr;
    const char* const state = tree->isExpanded(index) ? "open" : "closed";
    return index.model()->hasChildren(index) ? state : nullptr;
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
        if (isAtEdge(*guard))
            object.field("edge") += "true";
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

QByteArray rowAt(QAbstractItemView* view, const QPoint& position, ItemPlace place)
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
    const QRect rect = guard && index.isValid() ? view->visualRect(index) : QRect();
    const char* const check = guard && index.isValid() ? checkAt(*view, index, rect, position) : nullptr;
    const char* const branch = guard && index.isValid() ? branchAt(*view, index, rect, position) : nullptr;
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
        if (check)
            object.add("check", check);
        if (branch)
            object.add("branch", branch);
        if (place == ItemPlace::Told)
            addPlaceWithin(object, rect, position);
    }
    return json;
}

// At the end of a drag: the tab that was dragged, and those beside it, since it has moved with the mouse.
QByteArray tabAt(const QTabBar& bar, const QPoint& position, ItemPlace place)
{
    const bool isEnd = place == ItemPlace::Told;
    const int tab = isEnd ? bar.currentIndex() : bar.tabAt(position);
    const auto textOf = [&bar](int index) { return locate::shownText(bar.tabText(index), locate::Markup::Mnemonics); };
    QByteArray json;
    if (tab >= 0) {
        locate::JsonObject object(json);
        object.addUnlessEmpty("text", textOf(tab));
        object.add("row", tab);
        if (isEnd)
            addTexts(object, "beside", QStringList() << textOf(tab - 1) << textOf(tab + 1));
    }
    return json;
}

// The check box of a group with its title, which belongs to it.
QByteArray checkOf(const QGroupBox& group, const QPoint& position)
{
    QByteArray json;
    if (!group.isCheckable())
        return json;
    QStyleOptionGroupBox option;
    option.initFrom(&group);
    option.text = group.title();
    option.textAlignment = group.alignment();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    const QStyle::SubControl hit = group.style()->hitTestComplexControl(QStyle::CC_GroupBox, &option, position, &group);
    if (hit == QStyle::SC_GroupBoxCheckBox || hit == QStyle::SC_GroupBoxLabel) {
        locate::JsonObject object(json);
        object.add("check", checkWords[group.isChecked() ? 2 : 0]);
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

QByteArray itemAt(QWidget* widget, const QPoint& position, ItemPlace place)
{
    if (auto* header = qobject_cast<QHeaderView*>(widget))
        return sectionAt(header, position);
    if (auto* view = qobject_cast<QAbstractItemView*>(widget))
        return rowAt(view, position, place);
    if (const auto* bar = qobject_cast<QTabBar*>(widget))
        return tabAt(*bar, position, place);
    if (const auto* group = qobject_cast<QGroupBox*>(widget))
        return checkOf(*group, position);
    const QAction* action = nullptr;
    if (const auto* menu = qobject_cast<QMenu*>(widget))
        action = menu->actionAt(position);
    else if (const auto* bar = qobject_cast<QMenuBar*>(widget))
        action = bar->actionAt(position);
    return action && !action->isSeparator() ? menuItem(widget, action) : QByteArray();
}

} // namespace record
