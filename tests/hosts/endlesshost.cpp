// Trees that have no end, one per "--scenario"; see tests/protocol/test_endless_walks.py.

#include "scenario.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <limits>
#include <memory>

namespace {

struct Stage
{
    TestHost& host;
    QWidget* window;

    void show(QTreeView* view, QAbstractItemModel* model) const
    {
        view->setObjectName(QLatin1String("tree"));
        view->setModel(model);
        window->layout()->addWidget(view);
        journalView(host, view);
    }
};

// Has as many rows as it is asked for: "row 0", "row 1" and so on, and in the second one of them an item "inside".
class EndlessModel : public QStandardItemModel
{
public:
    explicit EndlessModel(QObject* parent)
        : QStandardItemModel(parent)
    {
        for (int row = 0; row < 5; ++row)
            appendRow(new QStandardItem(QString::fromLatin1("row %1").arg(row)));
        item(1)->appendRow(new QStandardItem(QLatin1String("inside")));
    }
    bool canFetchMore(const QModelIndex& parent) const override { return !parent.isValid(); }
    void fetchMore(const QModelIndex&) override
    {
        for (int i = 0; i < 10; ++i)
            appendRow(new QStandardItem(QString::fromLatin1("row %1").arg(rowCount())));
    }
};

void endlessScenario(Stage& stage)
{
    auto* view = new QTreeView;
    stage.show(view, new EndlessModel(stage.window));
    view->setRowHidden(1, QModelIndex(), true);
}

// On the way to the last row there is an open folder, which gets another item whenever the current item changes; after
// "do fillUpTo30", only up to that many.
void fillingScenario(Stage& stage)
{
    auto* model = new QStandardItemModel(stage.window);
    auto* folder = new QStandardItem(QLatin1String("folder"));
    folder->appendRow(new QStandardItem(QLatin1String("item")));
    model->appendRow(folder);
    model->appendRow(new QStandardItem(QLatin1String("last")));
    auto* view = new QTreeView;
    stage.show(view, model);
    view->expandAll();
    const auto most = std::make_shared<int>(std::numeric_limits<int>::max());
    stage.host.onRequest(QLatin1String("fillUpTo30"), [=] { *most = 30; });
    stage.host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (folder->rowCount() < *most)
            folder->appendRow(new QStandardItem(QLatin1String("item")));
    });
}

// An item "a" in an item "a", and so on without an end.
class DeepModel : public QAbstractItemModel
{
public:
    using QAbstractItemModel::QAbstractItemModel;

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        return createIndex(row, column, parent.isValid() ? quint32(parent.internalId() + 1) : quint32(1));
    }
    QModelIndex parent(const QModelIndex& index) const override
    {
        return index.internalId() > 1 ? createIndex(0, 0, quint32(index.internalId() - 1)) : QModelIndex();
    }
    int rowCount(const QModelIndex&) const override { return 1; }
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex&, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(QLatin1String("a")) : QVariant();
    }
};

void deepScenario(Stage& stage)
{
    stage.show(new QTreeView, new DeepModel(stage.window));
}

const Scenario<Stage> scenarios[] = {
    {"endless", endlessScenario},
    {"filling", fillingScenario},
    {"deep", deepScenario},
};

void build(TestHost& host)
{
    runScenario(host, scenarios, "Trees", QSize(400, 500));
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
