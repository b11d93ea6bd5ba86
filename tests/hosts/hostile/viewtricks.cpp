#include "viewtricks.h"

#include "faultinjector.h"
#include "hostilemodel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHeaderView>
#include <QListView>
#include <QPointer>
#include <QTableView>
#include <QTreeView>

namespace {

using ViewTrick = void (*)(Stage& stage, QAbstractItemView* view, int depth);

void changeModel(Stage&, QAbstractItemView* view, int)
{
    if (auto* model = qobject_cast<HostileModel*>(view->model()))
        model->change();
}

void replaceModel(Stage& stage, QAbstractItemView* view, int depth)
{
    const QPointer<QAbstractItemModel> old(view->model());
    setHostileModel(stage, view, depth);
    delete old;
}

void dropModel(Stage&, QAbstractItemView* view, int)
{
    view->setModel(nullptr);
}

void destroyModel(Stage&, QAbstractItemView* view, int)
{
    destroyModelOf(view);
}

void replaceSelection(Stage& stage, QAbstractItemView* view, int)
{
    if (!view->model())
        return;
    view->setSelectionModel(new QItemSelectionModel(view->model(), view));
    FaultInjector::connectSignalsOf(stage, view->selectionModel());
}

void closeEditors(Stage&, QAbstractItemView* view, int)
{
    view->reset();
}

void moveCurrent(Stage& stage, QAbstractItemView* view, int)
{
    if (view->model() && view->model()->rowCount() > 0)
        view->setCurrentIndex(view->model()->index(stage.chance.below(view->model()->rowCount()), 0));
}

void changeModes(Stage& stage, QAbstractItemView* view, int)
{
    view->setSelectionMode(static_cast<QAbstractItemView::SelectionMode>(stage.chance.below(5)));
    view->setSelectionBehavior(static_cast<QAbstractItemView::SelectionBehavior>(stage.chance.below(3)));
    view->setEditTriggers(
        stage.chance.oneIn(2) ? QAbstractItemView::AllEditTriggers : QAbstractItemView::EditKeyPressed);
    view->setTabKeyNavigation(stage.chance.oneIn(2));
}

void changeRoot(Stage& stage, QAbstractItemView* view, int)
{
    if (view->model())
        view->setRootIndex(stage.chance.oneIn(2) ? QModelIndex() : view->model()->index(0, 0));
}

void hideSections(Stage& stage, QAbstractItemView* view, int)
{
    const bool hide = stage.chance.oneIn(2);
    if (auto* tree = qobject_cast<QTreeView*>(view)) {
        tree->setColumnHidden(stage.chance.below(3), hide);
        tree->setHeaderHidden(hide);
        tree->collapseAll();
    } else if (auto* table = qobject_cast<QTableView*>(view)) {
        table->setRowHidden(stage.chance.below(4), hide);
        table->horizontalHeader()->moveSection(0, 1);
    } else if (auto* list = qobject_cast<QListView*>(view)) {
        list->setRowHidden(stage.chance.below(4), hide);
        list->setModelColumn(stage.chance.below(3));
    }
}

const ViewTrick viewTricks[] = {changeModel, changeModel, changeModel, replaceModel, dropModel, destroyModel,
    replaceSelection, closeEditors, moveCurrent, moveCurrent, changeModes, changeRoot, hideSections};
const int viewTrickCount = sizeof(viewTricks) / sizeof(viewTricks[0]);

} // namespace

void destroyModelOf(QAbstractItemView* view)
{
    delete view->model();
    if (qVersion()[0] != '4')
        return;
    // Qt 4's headers ask their selection model for the model that is gone if they are painted before they are reset.
    const QList<QHeaderView*> headers = view->findChildren<QHeaderView*>();
    for (QHeaderView* header : headers)
        header->reset();
}

void setHostileModel(Stage& stage, QAbstractItemView* view, int depth)
{
    auto* model = new HostileModel(stage.chance, depth, view);
    view->setModel(model);
    FaultInjector::connectSignalsOf(stage, model);
    if (view->selectionModel())
        FaultInjector::connectSignalsOf(stage, view->selectionModel());
}

void addViewTricks(Stage& stage, QAbstractItemView* view, int depth)
{
    const QPointer<QAbstractItemView> guarded(view);
    stage.addTrick([=, &stage](QObject*) {
        if (!guarded)
            return;
        // Qt 4 loses its place among the editors when one that has the focus ends with the model.
        if (qVersion()[0] == '4' && guarded->viewport()->isAncestorOf(QApplication::focusWidget()))
            guarded->setFocus();
        if (!guarded || !guarded->viewport())
            return;
        if (!guarded->model() || guarded->model()->rowCount() == 0)
            return replaceModel(stage, guarded, depth);
        viewTricks[stage.chance.below(viewTrickCount)](stage, guarded, depth);
    });
}
