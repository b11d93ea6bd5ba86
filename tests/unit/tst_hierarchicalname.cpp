// Whether the ancestors of a widget fit a hierarchical name, and how many levels the name goes further down.

#include "bridge/hierarchicalname.h"
#include "hierarchicalnames.h"
#include "unittests.h"

#include <QTest>

#include <QWidget>

#include <stdexcept>

using LmSquishProxy::ancestorsFit;

class tst_HierarchicalName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void ancestorsOfNestedWidgets_data();
    void ancestorsOfNestedWidgets();
    void gapNeedsALevelToSkipAndOneToMatch();
    void emptyElementFitsWidgetsWithoutName();
    void leadingNullAnchorsAtATopLevelWindow();
    void indexOutsideTheNameIsAnInternalError_data();
    void indexOutsideTheNameIsAnInternalError();
    void trailingWildcardsAreCounted_data();
    void trailingWildcardsAreCounted();

private:
    QWidget* add(QWidget* parent, const char* name);

    QWidget* main = nullptr;
    QWidget* frame = nullptr;
    QWidget* ok = nullptr;
};

QWidget* tst_HierarchicalName::add(QWidget* parent, const char* name)
{
    auto* widget = new QWidget(parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

void tst_HierarchicalName::init()
{
    main = add(nullptr, "main");
    frame = add(main, "frame");
    ok = add(add(frame, "box"), "ok");
}

void tst_HierarchicalName::cleanup()
{
    delete main;
}

void tst_HierarchicalName::ancestorsOfNestedWidgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char* title, const char* name, bool fits) {
        QTest::newRow(title) << QString::fromLatin1(name) << fits;
    };
    row("nothing left", "ok", true);
    row("parent", "box/ok", true);
    row("grandparent is no parent", "frame/ok", false);
    row("all ancestors", "main/frame/box/ok", true);
    row("more than there are", "above/main/frame/box/ok", false);
    row("empty element is no wildcard", "main//box/ok", false);
    row("comparison is exact", "Box/ok", false);

    row("anchored and complete", "*/main/frame/box/ok", true);
    row("anchored too low", "*/box/ok", false);
    row("anchored at the widget", "*/ok", false);
    row("anchored after a gap", "*/main/*/ok", true);
    row("anchored too low after a gap", "*/frame/*/ok", false);

    row("gap of one level", "frame/*/ok", true);
    row("gap, further up", "main/*/ok", true);
    row("gap of two levels", "main/*/*/ok", true);
    row("gap of all levels", "main/*/*/*/ok", false);
    row("gap is left before the parent", "main/*/box/ok", true);
    row("gap of nothing", "main/*/frame/box/ok", false);
    row("only wildcards, within", "*/*/ok", true);
    row("only wildcards, up to the top", "*/*/*/ok", true);
    row("only wildcards, beyond the top", "*/*/*/*/ok", false);

    row("after a gap, skipped level does not match but passes", "box/*/ok", true);
    row("after a gap, no ancestor matches but passes", "nothing/*/ok", true);
    row("after a gap beyond the top, next element passes", "other/nothing/*/ok", true);
    row("after a gap beyond the top, next element ends the test", "*/other/nothing/*/ok", true);
    row("after a gap beyond the top, the anchor fails", "*/nothing/*/ok", false);
    row("after a gap beyond the top, another gap fails", "other/*/nothing/*/ok", false);
}

void tst_HierarchicalName::ancestorsOfNestedWidgets()
{
    QFETCH(QString, name);
    QFETCH(bool, fits);
    const QStringList elements = hierarchicalName(name.toLatin1().constData());
    QCOMPARE(ancestorsFit(ok, elements, static_cast<int>(elements.size()) - 2), fits);
}

void tst_HierarchicalName::gapNeedsALevelToSkipAndOneToMatch()
{
    QVERIFY(!ancestorsFit(frame, hierarchicalName("nothing/*/frame"), 1)); // main is skipped, then none is left
    QVERIFY(!ancestorsFit(main, hierarchicalName("nothing/*/main"), 1)); // none to skip
    QVERIFY(!ancestorsFit(main, hierarchicalName("*/*/main"), 1));
    QVERIFY(ancestorsFit(main, hierarchicalName("*/main"), 0));
}

void tst_HierarchicalName::emptyElementFitsWidgetsWithoutName()
{
    QWidget* unnamed = new QWidget(frame);
    QWidget* below = add(unnamed, "below");
    QVERIFY(ancestorsFit(below, hierarchicalName("/below"), 0));
    QVERIFY(ancestorsFit(below, hierarchicalName("frame//below"), 1));
    QVERIFY(!ancestorsFit(ok, hierarchicalName("/ok"), 0));
    unnamed->setObjectName(QLatin1String("once"));
    unnamed->setObjectName(QLatin1String(""));
    QVERIFY(ancestorsFit(below, hierarchicalName("/below"), 0));
}

void tst_HierarchicalName::leadingNullAnchorsAtATopLevelWindow()
{
    // A dialog is a window, but it has a parent widget.
    auto* dialog = new QWidget(main, Qt::Dialog);
    dialog->setObjectName(QLatin1String("dialog"));
    QWidget* inside = add(dialog, "inside");
    QVERIFY(!ancestorsFit(inside, hierarchicalName("*/dialog/inside"), 1));
    QVERIFY(ancestorsFit(inside, hierarchicalName("*/main/dialog/inside"), 2));
    QVERIFY(!ancestorsFit(nullptr, hierarchicalName("*/main"), 0));
}

void tst_HierarchicalName::indexOutsideTheNameIsAnInternalError_data()
{
    QTest::addColumn<QStringList>("name");
    QTest::addColumn<int>("index");
    QTest::newRow("empty name") << QStringList() << 0;
    QTest::newRow("one behind the last") << hierarchicalName("main/ok") << 2;
    QTest::newRow("far behind") << hierarchicalName("main/ok") << 100;
}

void tst_HierarchicalName::indexOutsideTheNameIsAnInternalError()
{
    QFETCH(QStringList, name);
    QFETCH(int, index);
    QByteArray text;
    try {
        ancestorsFit(ok, name, index);
    } catch (const std::logic_error& error) {
        text = error.what();
    }
    QCOMPARE(text, QByteArray("checkPath(): internal error"));
    QVERIFY(ancestorsFit(ok, name, -1));
}

void tst_HierarchicalName::trailingWildcardsAreCounted_data()
{
    QTest::addColumn<QStringList>("name");
    QTest::addColumn<int>("count");
    QTest::newRow("empty") << QStringList() << 0;
    QTest::newRow("all") << hierarchicalName("*/*") << 2;
    QTest::newRow("none") << hierarchicalName("*/ok") << 0;
    QTest::newRow("two") << hierarchicalName("*/ok/*/*") << 2;
    QTest::newRow("empty text is none") << hierarchicalName("ok/") << 0;
}

void tst_HierarchicalName::trailingWildcardsAreCounted()
{
    QFETCH(QStringList, name);
    QFETCH(int, count);
    QCOMPARE(LmSquishProxy::trailingWildcards(name), count);
}

UNIT_TESTS(tst_hierarchicalname, unit::withApplication<tst_HierarchicalName>)
#include "tst_hierarchicalname.moc"
