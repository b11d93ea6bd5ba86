// Tables over all kinds of models, one per "--scenario"; see tests/protocol/test_table.py.

#include "scenario.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>
#include <QtCore/QDate>

namespace {

struct Stage
{
    TestHost& host;
    QWidget* window;

    QTableView* show(QTableView* view, QAbstractItemModel* model)
    {
        view->setObjectName(QLatin1String("table"));
        if (model)
            view->setModel(model);
        window->layout()->addWidget(view);
        journalView(host, view);
        addRequests(view);
        return view;
    }

    void addRequests(QTableView* view) const
    {
        host.onRequest(QLatin1String("noCurrent"), [=] { view->setCurrentIndex(QModelIndex()); });
        host.onRequest(QLatin1String("deleteModel"), [=] { delete view->model(); });
        host.onRequest(QLatin1String("hideThirdRow"), [=] { view->setRowHidden(2, true); });
        host.onRequest(QLatin1String("hideSecondColumn"), [=] { view->setColumnHidden(1, true); });
        host.onRequest(QLatin1String("swapColumns"), [=] { view->horizontalHeader()->swapSections(0, 1); });
        host.onRequest(QLatin1String("scrollToBottom"), [=] { view->scrollToBottom(); });
        host.onRequest(QLatin1String("makeSmall"), [=] { view->setFixedHeight(100); });
        host.onRequest(
            QLatin1String("focusOther"), [=] { window->findChild<QWidget*>(QLatin1String("other"))->setFocus(); });
        host.onRequest(QLatin1String("editOnCurrentChanged"),
            [=] { view->setEditTriggers(view->editTriggers() | QAbstractItemView::CurrentChanged); });
        host.onRequest(QLatin1String("cellCentre"), [=] {
            const QPoint centre = view->visualRect(view->currentIndex()).center();
            host.journal(QString::fromLatin1("centre %1,%2").arg(centre.x()).arg(centre.y()));
        });
        host.onRequest(QLatin1String("noTabKeyNavigation"), [=] { view->setTabKeyNavigation(false); });
    }
};

// Cells "R1C1" and so on.
QStandardItemModel* gridModel(int rows, int columns, QObject* parent)
{
    auto* model = new QStandardItemModel(rows, columns, parent);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            model->setData(model->index(row, column), QString::fromLatin1("R%1C%2").arg(row + 1).arg(column + 1));
    }
    return model;
}

void numberedScenario(Stage& stage)
{
    stage.show(new QTableView, gridModel(6, 4, stage.window));
}

// Rows "a", "same", "c", "7", "same", "f"; columns "Name", "Twice", "Twice", "2".
void namedScenario(Stage& stage)
{
    QStandardItemModel* model = gridModel(6, 4, stage.window);
    model->setVerticalHeaderLabels(QString::fromLatin1("a same c 7 same f").split(QLatin1Char(' ')));
    model->setHorizontalHeaderLabels(QString::fromLatin1("Name Twice Twice 2").split(QLatin1Char(' ')));
    stage.show(new QTableView, model);
}

// Headers and cells that hold bytes and numbers.
void byteScenario(Stage& stage)
{
    auto* model = new QStandardItemModel(2, 2, stage.window);
    model->setHeaderData(0, Qt::Horizontal, QByteArray("caf\xe9"));
    model->setHeaderData(1, Qt::Horizontal, 1.0f / 3);
    model->setData(model->index(1, 0), QByteArray("th\xe9"));
    model->setData(model->index(1, 1), 2.0f / 3);
    stage.show(new QTableView, model);
}

void widgetScenario(Stage& stage)
{
    auto* table = new QTableWidget(5, 3);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 3; ++column)
            table->setItem(row, column, new QTableWidgetItem(QString::fromLatin1("%1-%2").arg(row).arg(column)));
    }
    table->setSpan(1, 0, 2, 2);
    stage.show(table, nullptr);
}

void rootedScenario(Stage& stage)
{
    QStandardItemModel* model = gridModel(2, 2, stage.window);
    QStandardItem* parent = model->item(1);
    for (int row = 0; row < 3; ++row) {
        parent->appendRow(QList<QStandardItem*>() << new QStandardItem(QString::fromLatin1("left%1").arg(row))
                                                  << new QStandardItem(QString::fromLatin1("right%1").arg(row)));
    }
    stage.show(new QTableView, model)->setRootIndex(model->index(1, 0));
}

// One editor of each kind in the first row, and a line edit that takes three characters in the second.
class Delegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        auto* edit = qobject_cast<QLineEdit*>(editor);
        if (edit && index.row() == 1)
            edit->setMaxLength(3);
        return editor;
    }
};

void editorScenario(Stage& stage)
{
    QStandardItemModel* model = gridModel(2, 5, stage.window);
    model->setData(model->index(0, 1), 7);
    model->setData(model->index(0, 2), QDate(2020, 2, 3));
    model->setData(model->index(0, 3), true);
    model->setData(model->index(0, 4), 1.5);
    QTableView* view = stage.show(new QTableView, model);
    view->setItemDelegate(new Delegate(view));
}

// 10,000 rows, or "--rows N", of 50 columns.
void largeScenario(Stage& stage)
{
    const QStringList arguments = QCoreApplication::arguments();
    const int given = arguments.indexOf(QLatin1String("--rows"));
    const int rows = given < 0 ? 10000 : arguments.at(given + 1).toInt();
    stage.show(new QTableView, gridModel(rows, 50, stage.window));
}

void sortedScenario(Stage& stage)
{
    auto* proxy = new QSortFilterProxyModel(stage.window);
    proxy->setSourceModel(gridModel(4, 2, stage.window));
    proxy->setDynamicSortFilter(true);
    proxy->sort(0, Qt::DescendingOrder);
    stage.show(new QTableView, proxy);
}

void noModelScenario(Stage& stage)
{
    stage.show(new QTableView, nullptr);
}

void thiefScenario(Stage& stage)
{
    new FocusThief(stage.show(new QTableView, gridModel(2, 2, stage.window)),
        stage.window->findChild<QWidget*>(QLatin1String("other")));
}

// Is disabled as soon as it has the focus, without being told so.
void disablingScenario(Stage& stage)
{
    QTableView* view = stage.show(new QTableView, gridModel(2, 2, stage.window));
    new EventHandler(view, QEvent::FocusIn, [=] { view->setAttribute(Qt::WA_Disabled); });
}

using Change = void (*)(QTableView* view);

// Runs the change on the way, when a cell of the second column or row becomes current.
void onTheWay(Stage& stage, Change change)
{
    QTableView* view = stage.show(new QTableView, gridModel(6, 4, stage.window));
    afterSignal(stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (view->currentIndex().row() == 1 || view->currentIndex().column() == 1)
            change(view);
    });
}

void insertRows(QTableView* view)
{
    if (view->model()->rowCount() < 9)
        view->model()->insertRow(0);
}

void removeRows(QTableView* view)
{
    if (view->model()->rowCount() == 6)
        view->model()->removeRows(1, 4);
}

void insertingScenario(Stage& stage)
{
    onTheWay(stage, insertRows);
}
void removingScenario(Stage& stage)
{
    onTheWay(stage, removeRows);
}
void deletingViewScenario(Stage& stage)
{
    onTheWay(stage, [](QTableView* view) { delete view; });
}
void deletingModelScenario(Stage& stage)
{
    onTheWay(stage, [](QTableView* view) { delete view->model(); });
}

void resettingScenario(Stage& stage)
{
    QStandardItemModel* model = gridModel(6, 4, stage.window);
    QTableView* view = stage.show(new QTableView, model);
    stage.host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (view->currentIndex().column() == 1)
            model->clear();
    });
}

const Scenario<Stage> scenarios[] = {
    {"numbered", numberedScenario},
    {"named", namedScenario},
    {"bytes", byteScenario},
    {"widget", widgetScenario},
    {"rooted", rootedScenario},
    {"editors", editorScenario},
    {"sorted", sortedScenario},
    {"large", largeScenario},
    {"no-model", noModelScenario},
    {"thief", thiefScenario},
    {"disabling", disablingScenario},
    {"inserting", insertingScenario},
    {"removing", removingScenario},
    {"resetting", resettingScenario},
    {"deleting-model", deletingModelScenario},
    {"deleting-view", deletingViewScenario},
};

void build(TestHost& host)
{
    runScenario(host, scenarios, "Tables", QSize(620, 400));
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
