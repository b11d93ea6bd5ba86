// List views over all kinds of models, one per "--scenario"; see tests/protocol/test_list_view.py.

#include "scenario.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>
#include <QtCore/QDate>

namespace {

const char* const letters[] = {"Ant", "Bee", "Cat", "Bee", "Dog", "Eel", "Fox", "Gnu", "Hen", "Imp"};

QStringList letterTexts()
{
    QStringList texts;
    for (const char* text : letters)
        texts.append(QLatin1String(text));
    return texts;
}

// Cuts what is typed to three characters.
class ShortTextDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto* edit = qobject_cast<QLineEdit*>(editor))
            edit->setMaxLength(3);
        return editor;
    }
};

// 1,000 rows, loaded ten at a time as the view asks for them.
class LazyModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override { return parent.isValid() ? 0 : loaded; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(QString::number(index.row())) : QVariant();
    }
    bool canFetchMore(const QModelIndex&) const override { return loaded < 1000; }
    void fetchMore(const QModelIndex&) override
    {
        beginInsertRows(QModelIndex(), loaded, loaded + 9);
        loaded += 10;
        endInsertRows();
    }

private:
    int loaded = 0;
};

struct Stage
{
    TestHost& host;
    QWidget* window;

    QListView* show(QListView* view, QAbstractItemModel* model)
    {
        view->setObjectName(QLatin1String("list"));
        if (model)
            view->setModel(model);
        window->layout()->addWidget(view);
        journalView(host, view);
        host.onRequest(QLatin1String("deleteModel"), [=] { delete view->model(); });
        return view;
    }
};

QStandardItemModel* letterModel(QObject* parent)
{
    auto* model = new QStandardItemModel(parent);
    for (const char* text : letters)
        model->appendRow(new QStandardItem(QLatin1String(text)));
    model->item(5)->setEnabled(false);
    model->item(6)->setSelectable(false);
    model->item(7)->setCheckable(true);
    model->item(8)->setCheckable(true);
    model->item(8)->setCheckState(Qt::Checked);
    model->item(9)->setEditable(false);
    return model;
}

QListView* showLetters(Stage& stage)
{
    QListView* view = stage.show(new QListView, letterModel(stage.window));
    view->setRowHidden(4, true);
    TestHost& host = stage.host;
    for (int row = 0; row < view->model()->rowCount(); ++row) {
        host.onRequest(QLatin1String("current") + QLatin1String(letters[row]),
            [=] { view->setCurrentIndex(view->model()->index(row, 0)); });
    }
    host.onRequest(QLatin1String("noCurrent"), [=] { view->setCurrentIndex(QModelIndex()); });
    host.onRequest(QLatin1String("makeTall"), [=] { view->setGridSize(QSize(100, 100)); });
    host.onRequest(QLatin1String("scrollToTop"), [=] { view->scrollToTop(); });
    host.onRequest(QLatin1String("rect"), [=, &host] {
        const QRect rect = view->visualRect(view->currentIndex()) & view->viewport()->rect();
        host.journal(QString::fromLatin1("rect %1,%2,%3,%4")
                         .arg(rect.left())
                         .arg(rect.top())
                         .arg(rect.right())
                         .arg(rect.bottom()));
    });
    host.journalSignal(view, SIGNAL(doubleClicked(QModelIndex)), QLatin1String("doubled"));
    return view;
}

void letterScenario(Stage& stage)
{
    showLetters(stage);
}

void widgetScenario(Stage& stage)
{
    auto* list = new QListWidget;
    list->addItems(letterTexts());
    stage.show(list, nullptr);
    list->setRowHidden(1, true);
}

// The list shows the second column below the second row.
void rootedScenario(Stage& stage)
{
    auto* model = new QStandardItemModel(stage.window);
    for (int row = 0; row < 2; ++row) {
        auto* parent = new QStandardItem(QLatin1String("top"));
        for (int child = 0; child < 4; ++child) {
            parent->appendRow(QList<QStandardItem*>() << new QStandardItem(QLatin1String(
                                  "first")) << new QStandardItem(QString::fromLatin1("%1%2").arg(row).arg(child)));
        }
        model->appendRow(parent);
    }
    QListView* view = stage.show(new QListView, model);
    view->setRootIndex(model->index(1, 0));
    view->setModelColumn(1);
}

void editorScenario(Stage& stage)
{
    auto* model = new QStandardItemModel(4, 1, stage.window);
    model->setData(model->index(0, 0), QString::fromLatin1("abc"));
    model->setData(model->index(1, 0), 7);
    model->setData(model->index(2, 0), QDate(2020, 2, 3));
    model->setData(model->index(3, 0), true);
    QListView* view = stage.show(new QListView, model);
    view->setItemDelegate(new ShortTextDelegate(view));
}

void iconScenario(Stage& stage)
{
    QListView* view = stage.show(new QListView, new QStringListModel(letterTexts(), stage.window));
    view->setViewMode(QListView::IconMode);
    view->setWrapping(true);
    view->setGridSize(QSize(80, 40));
}

void lazyScenario(Stage& stage)
{
    stage.show(new QListView, new LazyModel(stage.window));
}

void sortedScenario(Stage& stage)
{
    auto* proxy = new QSortFilterProxyModel(stage.window);
    proxy->setSourceModel(letterModel(stage.window));
    proxy->setDynamicSortFilter(true);
    proxy->sort(0, Qt::DescendingOrder);
    proxy->setFilterFixedString(QLatin1String("e")); // Bee, Bee, Eel, Hen
    proxy->setFilterCaseSensitivity(Qt::CaseSensitive);
    stage.show(new QListView, proxy);
}

// Always has more rows, of which the sixth is disabled: keys pass it.
class EndlessModel : public LazyModel
{
public:
    using LazyModel::LazyModel;
    bool canFetchMore(const QModelIndex&) const override { return true; }
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return index.row() == 5 ? Qt::ItemFlags(Qt::NoItemFlags) : LazyModel::flags(index);
    }
};

void endlessScenario(Stage& stage)
{
    stage.show(new QListView, new EndlessModel(stage.window));
}

// Items that hold anything but a text.
void valueScenario(Stage& stage)
{
    const QVariant values[] = {1.0f / 3, 1e10f, 1.0 / 3, QByteArray("caf\xe9"), QByteArray("cut\0off", 7), QByteArray(),
        7, true, QChar(0x20ac), QDate(2024, 2, 29)};
    auto* model = new QStandardItemModel(stage.window);
    for (const QVariant& value : values) {
        auto* item = new QStandardItem;
        item->setData(value, Qt::DisplayRole);
        model->appendRow(item);
    }
    stage.show(new QListView, model);
}

void noModelScenario(Stage& stage)
{
    stage.show(new QListView, nullptr);
}

void thiefScenario(Stage& stage)
{
    new FocusThief(showLetters(stage), stage.window->findChild<QWidget*>(QLatin1String("other")));
}

// Once the current item changes, another row comes in at the top.
void insertingScenario(Stage& stage)
{
    auto* model = letterModel(stage.window);
    QListView* view = stage.show(new QListView, model);
    stage.host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (model->rowCount() < 13)
            model->insertRow(0, new QStandardItem(QLatin1String("new")));
    });
}

// Once the current item changes, the items up to "Cat" are gone.
void removingScenario(Stage& stage)
{
    auto* model = letterModel(stage.window);
    QListView* view = stage.show(new QListView, model);
    afterSignal(stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (model->rowCount() == 10)
            model->removeRows(0, 3);
    });
}

void resettingScenario(Stage& stage)
{
    auto* model = new QStringListModel(letterTexts(), stage.window);
    QListView* view = stage.show(new QListView, model);
    stage.host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)),
        [=] { model->setStringList(letterTexts()); });
}

void deletingModelScenario(Stage& stage)
{
    auto* model = letterModel(stage.window);
    QListView* view = stage.show(new QListView, model);
    afterSignal(
        stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] { delete model; });
}

void deletingViewScenario(Stage& stage)
{
    QListView* view = stage.show(new QListView, letterModel(stage.window));
    afterSignal(
        stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] { delete view; });
}

const Scenario<Stage> scenarios[] = {
    {"letters", letterScenario},
    {"widget", widgetScenario},
    {"rooted", rootedScenario},
    {"editors", editorScenario},
    {"icons", iconScenario},
    {"lazy", lazyScenario},
    {"sorted", sortedScenario},
    {"endless", endlessScenario},
    {"values", valueScenario},
    {"no-model", noModelScenario},
    {"thief", thiefScenario},
    {"inserting", insertingScenario},
    {"removing", removingScenario},
    {"resetting", resettingScenario},
    {"deleting-model", deletingModelScenario},
    {"deleting-view", deletingViewScenario},
};

void build(TestHost& host)
{
    runScenario(host, scenarios, "Lists", QSize(300, 400));
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
