// Tree item paths: how segments fit rows, and what looking for items costs.

#include "proxies/views/treeitempath.h"
#include "unittests.h"

#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

namespace {

// Counts how often it is asked for a text. Items are "p0", "p1" and so on, each with as many children "c0",
// "c1".
class CountingModel : public QAbstractItemModel
{
public:
    CountingModel(int parentCount, int childCount)
        : parents(parentCount)
        , children(childCount)
    {
    }

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        return createIndex(row, column, parent.isValid() ? quint32(parent.row() + 1) : topLevel);
    }
    QModelIndex parent(const QModelIndex& index) const override
    {
        return index.internalId() ? createIndex(int(index.internalId()) - 1, 0, topLevel) : QModelIndex();
    }
    int rowCount(const QModelIndex& parent) const override
    {
        return !parent.isValid() ? parents : parent.internalId() ? 0 : children;
    }
    int columnCount(const QModelIndex&) const override { return 2; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return QVariant();
        ++reads;
        const char kind = index.column() ? 's' : index.internalId() ? 'c' : 'p';
        return QLatin1Char(kind) + QString::number(index.row());
    }

    mutable int reads = 0;

private:
    quint32 topLevel = 0; // an index's id is its parent's row + 1, or this
    int parents;
    int children;
};

} // namespace

class TestTreeItemPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void segmentsFitRows_data();
    void segmentsFitRows();
    void rowTextsJoinShownColumns();
    void searchesGoBackWhenAPathEnds();
    void listingReadsEachTextOnce_data();
    void listingReadsEachTextOnce();
    void searchingReadsWhatItPassesOnce_data();
    void searchingReadsWhatItPassesOnce();
};

void TestTreeItemPath::segmentsFitRows_data()
{
    QTest::addColumn<QString>("segment");
    QTest::addColumn<QString>("rowText");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char* segment, const char* rowText, bool fits) {
        QTest::newRow(qPrintable(QString::fromLatin1("'%1' '%2'").arg(QLatin1String(segment), QLatin1String(rowText))))
            << QString::fromLatin1(segment) << QString::fromLatin1(rowText) << fits;
    };
    row("file", "file", true);
    row("file", "file:12", true);
    row("file:12", "file:12", true);
    row("file:13", "file:12", false);
    row("file:1", "file:12", false);
    row("fil", "file:12", false);
    row("file:12:x", "file:12", false);
    row("file:", "file", false);
    row("file:", "file:", true);
    row("file:", "file::3", true);
    row("FILE", "file", false);
    row("", "", true);
    row("", "x", false);
    row("", ":x", true);
    row(":x", ":x", true);
}

void TestTreeItemPath::segmentsFitRows()
{
    QFETCH(QString, segment);
    QFETCH(QString, rowText);
    QTEST(views::segmentMatches(segment, rowText), "fits");
}

void TestTreeItemPath::rowTextsJoinShownColumns()
{
    QStandardItemModel model(1, 4);
    QTreeView view;
    view.setModel(&model);
    const char* const texts[] = {"", "a", "", "b"};
    for (int column = 0; column < 4; ++column)
        model.setData(model.index(0, column), QString::fromLatin1(texts[column]));
    QCOMPARE(views::treeRowText(view, 0, QModelIndex()), QString::fromLatin1("a::b"));
    view.setColumnHidden(1, true);
    QCOMPARE(views::treeRowText(view, 0, QModelIndex()), QString::fromLatin1("b"));
    QCOMPARE(views::itemPathOf(view, QModelIndex()), QString());
}

void TestTreeItemPath::searchesGoBackWhenAPathEnds()
{
    // Two levels of "A", each twice; only the last has a child.
    QStandardItemModel model;
    QTreeView view;
    view.setModel(&model);
    QStandardItem* last = nullptr;
    for (int i = 0; i < 2; ++i) {
        auto* top = new QStandardItem(QLatin1String("A"));
        model.appendRow(top);
        for (int k = 0; k < 2; ++k) {
            last = new QStandardItem(QLatin1String("A"));
            top->appendRow(last);
        }
    }
    last->appendRow(new QStandardItem(QString()));
    QCOMPARE(views::findItem(view, QLatin1String("A/A/")), last->child(0)->index());
    QCOMPARE(views::findItem(view, QLatin1String("A/A")), model.item(0)->child(0)->index());
    QVERIFY(!views::findItem(view, QLatin1String("A/A//")).isValid());
    QVERIFY(!views::findItem(view, QString()).isValid());
}

void TestTreeItemPath::listingReadsEachTextOnce_data()
{
    QTest::addColumn<int>("parents");
    QTest::newRow("30,000 items") << 100;
    QTest::newRow("60,000 items") << 200;
    QTest::newRow("100,000 items") << 333;
}

void TestTreeItemPath::listingReadsEachTextOnce()
{
    QFETCH(int, parents);
    CountingModel model(parents, 300);
    QTreeView view;
    view.setModel(&model);
    model.reads = 0;
    const QStringList paths = views::treeItemPaths(view);
    QCOMPARE(paths.size(), parents * 301);
    QCOMPARE(paths.at(302), QString::fromLatin1("p1:s1/c0:s0"));
    QCOMPARE(model.reads, 2 * parents * 301);
}

void TestTreeItemPath::searchingReadsWhatItPassesOnce_data()
{
    listingReadsEachTextOnce_data();
}

void TestTreeItemPath::searchingReadsWhatItPassesOnce()
{
    QFETCH(int, parents);
    CountingModel model(parents, 300);
    QTreeView view;
    view.setModel(&model);
    model.reads = 0;
    const QString path = QString::fromLatin1("p%1/c299").arg(parents - 1);
    QVERIFY(views::findItem(view, path).isValid());
    QCOMPARE(model.reads, 2 * (parents + 300)); // the parents, and the children of the one that fits
    model.reads = 0;
    QVERIFY(!views::findItem(view, QLatin1String("p0/nothing")).isValid());
    QCOMPARE(model.reads, 2 * (parents + 300));
}

UNIT_TESTS(tst_treeitempath, unit::withApplication<TestTreeItemPath>)
#include "tst_treeitempath.moc"
