// Reading items of views of growing size: the last one, found by its text or header, and the listing of all. The floor
// reads the same texts from the model, in one loop.

#include "onscreen.h"
#include "pairs.h"
#include "proxy/stapplicationproxy.h"

#include <QKeyEvent>
#include <QListView>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeView>

#include <memory>

namespace {

const int treeParents = 100;
const int tableColumns = 3;

QString itemText(int index)
{
    return QString::fromLatin1("item %1").arg(index);
}

std::shared_ptr<QStandardItemModel> listModel(int size, int columns)
{
    const auto model = std::make_shared<QStandardItemModel>(size, columns);
    for (int row = 0; row < size; ++row)
        model->setItem(row, 0, new QStandardItem(itemText(row)));
    return model;
}

std::shared_ptr<QStandardItemModel> treeModel(int size)
{
    const auto model = std::make_shared<QStandardItemModel>();
    for (int row = 0; row < treeParents; ++row)
        model->appendRow(new QStandardItem(QString::fromLatin1("parent %1").arg(row)));
    for (int index = 0; index < size; ++index)
        model->item(index % treeParents)->appendRow(new QStandardItem(itemText(index)));
    return model;
}

// A view with its model, and the agent's reads of it.
template <class View>
struct Viewed
{
    explicit Viewed(const std::shared_ptr<QStandardItemModel>& shown)
        : model(shown)
    {
        view.setModel(model.get());
    }

    QVariant read(const char* property, const QString& argument)
    {
        return registry.property(
            &view, QString(), QLatin1String(property), argument.isEmpty() ? QVariant() : QVariant(argument));
    }

    std::shared_ptr<QStandardItemModel> model;
    View view;
    STApplicationProxy registry;
};

template <class View>
Measured reading(const std::shared_ptr<QStandardItemModel>& model, const char* property, const QString& argument)
{
    const auto viewed = std::make_shared<Viewed<View>>(model);
    return [viewed, property, argument] { benchmark::DoNotOptimize(viewed->read(property, argument)); };
}

void readTexts(const QStandardItemModel& model, const QModelIndex& parent, const QString& prefix, QStringList& texts)
{
    for (int row = 0, rows = model.rowCount(parent); row < rows; ++row) {
        const QModelIndex item = model.index(row, 0, parent);
        const QString path = prefix + item.data().toString();
        texts.append(path);
        if (model.rowCount(item) > 0)
            readTexts(model, item, path + QLatin1Char('/'), texts);
    }
}

Measured readingTexts(const std::shared_ptr<QStandardItemModel>& model)
{
    return [model] {
        QStringList texts;
        readTexts(*model, QModelIndex(), QString(), texts);
        benchmark::DoNotOptimize(texts);
    };
}

QModelIndex childWithText(const QStandardItemModel& model, const QModelIndex& parent, const QString& text)
{
    for (int row = 0, rows = model.rowCount(parent); row < rows; ++row) {
        const QModelIndex item = model.index(row, 0, parent);
        if (item.data().toString() == text)
            return item;
    }
    return QModelIndex();
}

Measured findingPath(const std::shared_ptr<QStandardItemModel>& model, const QString& path)
{
    return [model, path] {
        QModelIndex item;
        for (const QString& text : path.split(QLatin1Char('/')))
            item = childWithText(*model, item, text);
        benchmark::DoNotOptimize(item);
    };
}

Measured readingHeaders(const std::shared_ptr<QStandardItemModel>& model)
{
    return [model] {
        for (int row = 0, rows = model->rowCount(); row < rows; ++row)
            benchmark::DoNotOptimize(model->headerData(row, Qt::Vertical).toString());
    };
}

QString lastTreePath(int size)
{
    return QString::fromLatin1("parent %1/%2").arg((size - 1) % treeParents).arg(itemText(size - 1));
}

// One key down or up in a list: the item is the current one's neighbour.
struct ShownList : Viewed<QListView>
{
    explicit ShownList(int size)
        : Viewed<QListView>(listModel(size, 1))
    {
        view.setUniformItemSizes(true);
        showActive(view);
        view.setCurrentIndex(model->index(1, 0));
    }

    int nextRow() const { return view.currentIndex().row() == 1 ? 2 : 1; }
};

Measured walking(int size)
{
    const auto list = std::make_shared<ShownList>(size);
    return [list] {
        const int row = list->nextRow();
        list->registry.activate(&list->view, QString(), row, QVariant());
        if (list->view.currentIndex().row() != row)
            qFatal("the list did not move");
    };
}

// The two keys, the one that tells whether the list has the focus and the one that moves, and the window raised before.
Measured walkingByQt(int size)
{
    const auto list = std::make_shared<ShownList>(size);
    return [list] {
        const int row = list->nextRow();
        list->view.activateWindow();
        list->view.raise();
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
        const auto press = [&](int key) {
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QCoreApplication::postEvent(&list->view, new QKeyEvent(type, key, Qt::NoModifier));
                QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
            }
        };
        press(Qt::Key_Up);
        while (list->view.currentIndex().row() < row)
            press(Qt::Key_Down);
        while (list->view.currentIndex().row() > row)
            press(Qt::Key_Up);
    };
}

} // namespace

#define ITEM_SIZES                                                                                                     \
    {                                                                                                                  \
        1000, 10000, 100000                                                                                            \
    }

void registerItems()
{
    registerPair(
        "list_find", Clock::Processor, ITEM_SIZES,
        [](int size) { return reading<QListView>(listModel(size, 1), "itemIsEnabled", itemText(size - 1)); },
        [](int size) { return findingPath(listModel(size, 1), itemText(size - 1)); });
    registerPair(
        "list_all", Clock::Processor, ITEM_SIZES,
        [](int size) { return reading<QListView>(listModel(size, 1), "itemList", QString()); },
        [](int size) { return readingTexts(listModel(size, 1)); });
    registerPair(
        "tree_find", Clock::Processor, ITEM_SIZES,
        [](int size) { return reading<QTreeView>(treeModel(size), "itemIsEnabled", lastTreePath(size)); },
        [](int size) { return findingPath(treeModel(size), lastTreePath(size)); });
    registerPair(
        "tree_all", Clock::Processor, ITEM_SIZES,
        [](int size) { return reading<QTreeView>(treeModel(size), "pathList", QString()); },
        [](int size) { return readingTexts(treeModel(size)); });
    registerPair(
        "table_find", Clock::Processor, ITEM_SIZES,
        [](int size) {
            return reading<QTableView>(
                listModel(size, tableColumns), "itemText", QString::fromLatin1("%1:1").arg(size));
        },
        [](int size) { return readingHeaders(listModel(size, tableColumns)); });
    registerPair("list_walk", Clock::Wall, ITEM_SIZES, walking, walkingByQt);
}
