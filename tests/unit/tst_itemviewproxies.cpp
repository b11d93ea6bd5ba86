// Parts of the item view proxies that no request of the protocol can reach: lists of texts, ints as arguments of
// properties, pseudo-properties of unknown names, other widgets. And the cost of looking up header texts.

#include "errorof.h"
#include "proxies/views/stqabstractitemview.h"
#include "proxies/views/stqlistview.h"
#include "proxies/views/stqtable.h"
#include "proxies/views/stqtreeview.h"
#include "proxy/stapplicationproxy.h"
#include "unittests.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

namespace {

QVariant text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

QStringList texts(const char* separatedBySpaces)
{
    return QString::fromLatin1(separatedBySpaces).split(QLatin1Char(' '));
}

// One window with a tree of "one", "two", "three", "four", active, as a user has it.
class Tree : public QTreeWidget
{
public:
    explicit Tree(SelectionMode mode)
    {
        setObjectName(QLatin1String("tree"));
        for (const QString& name : texts("one two three four"))
            new QTreeWidgetItem(this, QStringList(name));
        setSelectionMode(mode);
        resize(300, 200);
        show();
        activateWindow();
        for (int tries = 0; tries < 500 && !isActiveWindow(); ++tries)
            QTest::qWait(10);
    }

    QStringList selectedTexts() const
    {
        QStringList selected;
        for (int i = 0; i < topLevelItemCount(); ++i) {
            if (topLevelItem(i)->isSelected())
                selected << topLevelItem(i)->text(0);
        }
        return selected;
    }
};

// One in which arrow keys select nothing, space selects its item alone, and with Control in addition to others.
class SpaceSelectedTree : public Tree
{
public:
    using Tree::Tree;

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex&, const QEvent* event) const override
    {
        if (!event || event->type() != QEvent::KeyPress)
            return QItemSelectionModel::NoUpdate;
        const auto* key = static_cast<const QKeyEvent*>(event);
        if (key->key() != Qt::Key_Space)
            return QItemSelectionModel::NoUpdate;
        return key->modifiers() == Qt::ControlModifier ? QItemSelectionModel::Select
                                                       : QItemSelectionModel::ClearAndSelect;
    }
};

// Counts how often it is asked for a header's text.
class HeaderModel : public QAbstractTableModel
{
public:
    explicit HeaderModel(int rowNumber)
        : rows(rowNumber)
    {
    }
    int rowCount(const QModelIndex&) const override { return rows; }
    int columnCount(const QModelIndex&) const override { return 50; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(index.row() * 50 + index.column()) : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation, int role) const override
    {
        if (role != Qt::DisplayRole)
            return QVariant();
        ++reads;
        return QString::fromLatin1("h%1").arg(section);
    }

    mutable int reads = 0;

private:
    int rows;
};

} // namespace

class TestItemViewProxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aListSelectsAllItsItemsInMultiSelection();
    void aListIsWalkedThroughInExtendedSelection();
    void aListsFurtherItemsAreAddedWithControl_data();
    void aListsFurtherItemsAreAddedWithControl();
    void aListIsRefusedInSingleSelection();
    void aListWithAMissingItemIsAnError();
    void treeArgumentsAreTexts();
    void theFocusMessageHasAReplacementCharacter();
    void unknownItemNamesStillLookTheItemUp();
    void unknownNamesStillReadTheirIndexPath();
    void headerNumbersMayBeInts();
    void otherWidgetsAreNoItemViews();
    void findingACellReadsEachHeaderTextOnce_data();
    void findingACellReadsEachHeaderTextOnce();
};

void TestItemViewProxies::aListSelectsAllItsItemsInMultiSelection()
{
    Tree tree(QAbstractItemView::MultiSelection);
    tree.topLevelItem(1)->setSelected(true);
    STApplicationProxy registry;
    registry.activate(&tree, QString(), texts("four one three"), QVariant());
    QCOMPARE(tree.selectedTexts(), texts("one three four"));
}

void TestItemViewProxies::aListIsWalkedThroughInExtendedSelection()
{
    // Arrow keys without Control leave only the item that they lead to selected; that is what keys do.
    Tree tree(QAbstractItemView::ExtendedSelection);
    STApplicationProxy registry;
    registry.activate(&tree, QString(), texts("one three"), QVariant());
    QCOMPARE(tree.currentItem()->text(0), QString::fromLatin1("three"));
    QCOMPARE(tree.selectedTexts(), texts("three"));
}

void TestItemViewProxies::aListsFurtherItemsAreAddedWithControl_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("extended") << int(QAbstractItemView::ExtendedSelection) << texts("one three four");
    QTest::newRow("contiguous") << int(QAbstractItemView::ContiguousSelection) << texts("one three four");
    QTest::newRow("not in multi") << int(QAbstractItemView::MultiSelection) << texts("four");
}

void TestItemViewProxies::aListsFurtherItemsAreAddedWithControl()
{
    QFETCH(int, mode);
    SpaceSelectedTree tree{QAbstractItemView::SelectionMode(mode)};
    tree.topLevelItem(1)->setSelected(true);
    STApplicationProxy registry;
    registry.activate(&tree, QString(), texts("one three four"), QVariant());
    QTEST(tree.selectedTexts(), "selected");
}

void TestItemViewProxies::aListIsRefusedInSingleSelection()
{
    Tree tree(QAbstractItemView::SingleSelection);
    STApplicationProxy registry;
    const auto activate = [&](const QVariant& value) { registry.activate(&tree, QString(), value, QVariant()); };
    QCOMPARE(errorOf([&] { activate(texts("one two")); }),
        QString::fromLatin1("selection of more than one item is not possible in single selection mode"));
    QCOMPARE(errorOf([&] { activate(text("two")); }), QString());
    QCOMPARE(tree.selectedTexts(), texts("two"));
}

void TestItemViewProxies::aListWithAMissingItemIsAnError()
{
    Tree tree(QAbstractItemView::MultiSelection);
    STApplicationProxy registry;
    QCOMPARE(errorOf([&] { registry.activate(&tree, QString(), texts("one nothing two"), QVariant()); }),
        QString::fromLatin1("Invalid item path"));
    QCOMPARE(tree.selectedTexts(), texts("one"));
}

void TestItemViewProxies::treeArgumentsAreTexts()
{
    Tree tree(QAbstractItemView::SingleSelection);
    STQTreeView proxy;
    proxy.bind(&tree, "QTreeView");
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("itemPath", 1); }),
        QString::fromLatin1("Type error: object \"tree\" of class \"QTreeWidget\" accepts string."));
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("itemPath", QVariant()); }), QString::fromLatin1("Missing item path"));
    QCOMPARE(proxy.pseudoProperty("path", text("one")), QVariant());
}

void TestItemViewProxies::theFocusMessageHasAReplacementCharacter()
{
    QTreeView unseen;
    STQTreeView proxy;
    proxy.bind(&unseen, "QTreeView");
    QString expected = QString::fromLatin1("Oops, can?t set the focus to the list view");
    expected[expected.indexOf(QLatin1Char('?'))] = QChar(0xFFFD);
    QCOMPARE(errorOf([&] { proxy.activate(text("a"), QVariant()); }), expected);
}

void TestItemViewProxies::unknownItemNamesStillLookTheItemUp()
{
    QStringListModel model(texts("a 7"));
    QListView view;
    view.setModel(&model);
    STQListView proxy;
    proxy.bind(&view, "QListView");
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("itemFlavour", text("b")); }),
        QString::fromLatin1("activate, QListView unknown item b"));
    QCOMPARE(proxy.pseudoProperty("itemFlavour", text("a")), QVariant());
    QCOMPARE(proxy.pseudoProperty("flavour", QVariant()), QVariant());
    // Anything but nothing is read as a text.
    QCOMPARE(proxy.pseudoProperty("itemIsEnabled", 7), QVariant(true));

    Tree tree(QAbstractItemView::SingleSelection);
    STQTreeView treeProxy;
    treeProxy.bind(&tree, "QTreeView");
    QCOMPARE(
        errorOf([&] { treeProxy.pseudoProperty("itemFlavour", text("b")); }), QString::fromLatin1("Invalid item path"));
    QCOMPARE(treeProxy.pseudoProperty("itemFlavour", text("one")), QVariant());
}

void TestItemViewProxies::unknownNamesStillReadTheirIndexPath()
{
    QStringListModel model(texts("a b"));
    QListView view;
    view.setModel(&model);
    STQAbstractItemView proxy;
    proxy.bind(&view, "QAbstractItemView");
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("flavour", text("3")); }),
        QString::fromLatin1("Row 3 is out of range (0..2)"));
    QCOMPARE(proxy.pseudoProperty("flavour", text("2")), QVariant());
    QCOMPARE(proxy.pseudoProperty("itemData", 2), text("b"));
}

void TestItemViewProxies::headerNumbersMayBeInts()
{
    QStandardItemModel model(2, 2);
    QTableView view;
    view.setModel(&model);
    view.setObjectName(QLatin1String("table"));
    STQTable proxy;
    proxy.bind(&view, "QTableView");
    QCOMPARE(proxy.pseudoProperty("rowHeaderText", 2), text("2"));
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("columnHeaderText", 3); }),
        QString::fromLatin1("Invalid col 3 is out of range [1, 2]"));
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("rowHeaderText", true); }),
        QString::fromLatin1("Type error: object \"table\" of class \"QTableView\" accepts string, int."));
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("itemText", true); }),
        QString::fromLatin1("Type error: object \"table\" of class \"QTableView\" accepts string."));
    QCOMPARE(proxy.pseudoProperty("itemFlavour", QVariant()), QVariant());
}

void TestItemViewProxies::otherWidgetsAreNoItemViews()
{
    QLabel label;
    STQAbstractItemView proxy;
    proxy.bind(&label, "QAbstractItemView");
    QCOMPARE(errorOf([&] { proxy.activate(text("1"), text("Select")); }), QString::fromLatin1("Invalid Widget"));
    QCOMPARE(errorOf([&] { proxy.pseudoProperty("rowCount", QVariant()); }), QString::fromLatin1("Invalid Widget"));
    STQTable table;
    table.bind(&label, "QTableView");
    QCOMPARE(errorOf([&] { table.pseudoProperty("rowCount", QVariant()); }),
        QString::fromLatin1(
            "Internal error, proxy for class \"QTableView\", connected to widget of class \"QLabel\"."));
}

void TestItemViewProxies::findingACellReadsEachHeaderTextOnce_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("5,000 rows") << 5000;
    QTest::newRow("10,000 rows") << 10000;
}

void TestItemViewProxies::findingACellReadsEachHeaderTextOnce()
{
    QFETCH(int, rows);
    HeaderModel model(rows);
    QTableView view;
    view.setModel(&model);
    STQTable proxy;
    proxy.bind(&view, "QTableView");
    model.reads = 0;
    const QVariant address(QString::fromLatin1("h%1:h49").arg(rows / 2));
    QCOMPARE(proxy.pseudoProperty("itemText", address), QVariant(QString::number(rows / 2 * 50 + 49)));
    QCOMPARE(model.reads, rows + 50);
}

UNIT_TESTS(tst_itemviewproxies, unit::withApplication<TestItemViewProxies>)
#include "tst_itemviewproxies.moc"
