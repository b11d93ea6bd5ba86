#include "proxies/views/itemarea.h"

#include "proxies/views/itemposition.h"
#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"

#include <QHeaderView>
#include <QTreeView>
#include <QtCore/QPersistentModelIndex>

namespace views {

namespace {

const char hiddenMessage[] = "Item \"%s\" is not in sight";

[[noreturn]] void raiseHidden(const QString& name)
{
    proxy::raiseNotYet(proxy::hiddenItem(name), hiddenMessage, name);
}

// An item of the section in a row or column that is visible already, so that the view scrolls in one direction only.
QModelIndex itemOfSection(const QAbstractItemView& view, Qt::Orientation orientation, int section)
{
    const QModelIndex first = view.indexAt(QPoint(0, 0));
    const int across = qMax(0, orientation == Qt::Horizontal ? first.row() : first.column());
    return orientation == Qt::Horizontal ? view.model()->index(across, section, view.rootIndex())
                                         : view.model()->index(section, across, view.rootIndex());
}

bool isSortedBy(const QHeaderView& header, int section, Qt::SortOrder order)
{
    return header.isSortIndicatorShown() && header.sortIndicatorSection() == section
        && header.sortIndicatorOrder() == order;
}

bool isBranch(const QAbstractItemView& view, const QModelIndex& item, bool isExpanded)
{
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    return tree && tree->model()->hasChildren(item) && tree->isExpanded(item) == isExpanded;
}

} // namespace

STWidgetProxy::ItemArea showItem(QAbstractItemView* itemView, const QModelIndex& index, const QString& name)
{
    const QPointer<QAbstractItemView> view(itemView);
    const QPersistentModelIndex item(index);
    if (item.isValid())
        view->scrollTo(item, QAbstractItemView::EnsureVisible); // this may run code of the application
    if (!view)
        proxy::raiseError(proxy::deadWidgetMessage);
    if (!item.isValid())
        proxy::raiseNotYet(proxy::missingItem(name), hiddenMessage, name);
    const QRect rect = view->visualRect(item).intersected(view->viewport()->rect());
    if (rect.isEmpty())
        raiseHidden(name);
    return {view->viewport(), rect, (item.flags() & Qt::ItemIsEnabled) != 0};
}

STWidgetProxy::ItemState itemState(QAbstractItemView* itemView, const QModelIndex& index)
{
    struct Row
    {
        const char* word;
        bool (*holds)(const QAbstractItemView& view, const QModelIndex& item);
    };
    static const Row rows[] = {
        {"disabled",
            [](const QAbstractItemView& view, const QModelIndex& item) { return !itemIsEnabled(view, item).toBool(); }},
        {"checkable",
            [](const QAbstractItemView& view, const QModelIndex& item) {
                return itemIsCheckable(view, item).toBool() && item.data(Qt::CheckStateRole).isValid();
            }},
        {"checked",
            [](const QAbstractItemView& view, const QModelIndex& item) { return itemIsChecked(view, item).toBool(); }},
        {"partly checked",
            [](const QAbstractItemView&, const QModelIndex& item) {
                return item.data(Qt::CheckStateRole).toInt() == Qt::PartiallyChecked;
            }},
        {"selected", isSelected},
        {"current", [](const QAbstractItemView& view, const QModelIndex& item) { return view.currentIndex() == item; }},
        {"expanded", [](const QAbstractItemView& view, const QModelIndex& item) { return isBranch(view, item, true); }},
        {"collapsed",
            [](const QAbstractItemView& view, const QModelIndex& item) { return isBranch(view, item, false); }},
    };
    const QPointer<QAbstractItemView> view(itemView);
    const QPersistentModelIndex item(index);
    STWidgetProxy::ItemState state;
    if (item.isValid())
        state.text = displayText(item);
    for (const Row& row : rows) {
        if (view && item.isValid() && row.holds(*view, item)) // reading a model may change it
            state.states.append(QLatin1String(row.word));
    }
    return state;
}

STWidgetProxy::ItemState sectionState(QAbstractItemView* itemView, Qt::Orientation orientation, int section)
{
    struct Row
    {
        const char* word;
        bool (*holds)(const QHeaderView& header, int section);
    };
    static const Row rows[] = {
        {"hidden", [](const QHeaderView& header, int section) { return header.isSectionHidden(section); }},
        {"ascending",
            [](const QHeaderView& header, int section) { return isSortedBy(header, section, Qt::AscendingOrder); }},
        {"descending",
            [](const QHeaderView& header, int section) { return isSortedBy(header, section, Qt::DescendingOrder); }},
    };
    const QPointer<QHeaderView> header(requiredHeader(*itemView, orientation));
    STWidgetProxy::ItemState state;
    state.text = headerText(*itemView->model(), section, orientation); // the model may delete its views meanwhile
    for (const Row& row : rows) {
        if (header && row.holds(*header, section))
            state.states.append(QLatin1String(row.word));
    }
    return state;
}

STWidgetProxy::ItemArea showSection(
    QAbstractItemView* itemView, Qt::Orientation orientation, int section, const QString& name)
{
    const QPointer<QAbstractItemView> view(itemView);
    const QPointer<QHeaderView> header(requiredHeader(*view, orientation));
    if (header->isSectionHidden(section))
        raiseHidden(name);
    const QModelIndex item = itemOfSection(*view, orientation, section);
    if (item.isValid())
        view->scrollTo(item, QAbstractItemView::EnsureVisible);
    if (!view || !header)
        proxy::raiseError(proxy::deadWidgetMessage);
    const int start = header->sectionViewportPosition(section);
    const int size = header->sectionSize(section);
    const QRect area = header->viewport()->rect();
    const QRect rect
        = orientation == Qt::Horizontal ? QRect(start, 0, size, area.height()) : QRect(0, start, area.width(), size);
    if (!header->isVisible() || rect.intersected(area).isEmpty())
        raiseHidden(name);
    return {header->viewport(), rect.intersected(area), true};
}

} // namespace views
