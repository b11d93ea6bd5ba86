// The search for widgets by hierarchical name, and what its error says.

#include "searchwindows.h"

#include <QtTest/QtTest>

#include <QDialog>

class tst_HierarchicalSearch : public QObject, private SearchWindows
{
    Q_OBJECT

private Q_SLOTS:
    void init() { showWindows(); }
    void cleanup() { deleteWindows(); }

    void listWithoutNamesIsInvalid_data();
    void listWithoutNamesIsInvalid();

    void windowItselfIsFound();
    void givenWindowIsTheOnlyOneSearched();
    void deletedWindowFindsNothing();
    void unknownNameIsNotFound();
    void wrongAncestorsAreNotFound();
    void sameNameInTwoWindowsIsAmbiguous();
    void sameNameTwiceInOneWindowIsAmbiguous();
    void onlyVisiblePassesOverHiddenWidgets();
    void widgetBelowAHiddenOneIsHidden();
    void dialogWithAParentIsFoundOnce();
    void widgetInADialogWithAParentIsAmbiguousWithoutWindow();
    void emptyElementFindsUnnamedWidgets();

    void descentNeedsTheOnlyWayDown_data();
    void descentNeedsTheOnlyWayDown();
    void descentCountsHiddenChildrenButDoesNotReturnThem();
};

void tst_HierarchicalSearch::listWithoutNamesIsInvalid_data()
{
    QTest::addColumn<QStringList>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("empty list") << QStringList() << QString();
    QTest::newRow("empty list and title") << QStringList() << text("Editor");
    QTest::newRow("one null without title") << hierarchicalName("*") << QString();
    QTest::newRow("two nulls and title") << hierarchicalName("*/*") << text("Editor");
}

void tst_HierarchicalSearch::listWithoutNamesIsInvalid()
{
    QFETCH(QStringList, name);
    QFETCH(QString, title);
    QVERIFY(!proxy->findWidgetByHierarchicalName(name, title));
    QCOMPARE(error(), text("InvalidWidgetPath"));
}

void tst_HierarchicalSearch::windowItselfIsFound()
{
    QCOMPARE(find("main"), main.get());
    QCOMPARE(find("*/main"), main.get());
    QVERIFY(!find("*/left"));
    QVERIFY(!find("any/main"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
}

void tst_HierarchicalSearch::givenWindowIsTheOnlyOneSearched()
{
    QCOMPARE(find("cancel", QString(), main.get()), right->findChild<QWidget*>(text("cancel")));
    QVERIFY(!find("cancel", QString(), other.get()));
    QVERIFY(!find("cancel", text("Editor 2"), main.get()));
    QCOMPARE(find("main/right", QString(), right), right); // any widget will do; ancestors are not bounded by it
    QCOMPARE(find("right/ok", QString(), right), right->findChild<QWidget*>(text("ok")));
}

void tst_HierarchicalSearch::deletedWindowFindsNothing()
{
    auto* const gone = add<QWidget>(other.get(), "gone");
    other.reset();
    QVERIFY(!find("main", QString(), gone));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QCOMPARE(find("*", text("Editor"), gone), main.get()); // by its title, wherever a name would be searched
    QCOMPARE(error(), text("NoError"));
    QVERIFY(!find("*/*", text("Editor"), gone));
    QCOMPARE(error(), text("InvalidWidgetPath"));
}

void tst_HierarchicalSearch::unknownNameIsNotFound()
{
    QVERIFY(!find("nobody"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QVERIFY(find("left"));
    QCOMPARE(error(), text("NoError"));
}

void tst_HierarchicalSearch::wrongAncestorsAreNotFound()
{
    QCOMPARE(find("left/ok"), left->findChild<QWidget*>(text("ok")));
    QCOMPARE(find("*/main/right/ok"), right->findChild<QWidget*>(text("ok")));
    QVERIFY(!find("main/ok"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QVERIFY(!find("main/*/ok")); // both
    QCOMPARE(error(), text("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::sameNameInTwoWindowsIsAmbiguous()
{
    QWidget* const hidden = add<QWidget>(other.get(), "cancel");
    hidden->hide();
    QVERIFY(!find("cancel", QString(), nullptr, false));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    QCOMPARE(find("cancel"), right->findChild<QWidget*>(text("cancel")));
    other->hide();
    QVERIFY(!find("cancel", QString(), nullptr, false));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::sameNameTwiceInOneWindowIsAmbiguous()
{
    QVERIFY(!find("ok"));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    add<QWidget>(main.get(), "main")->show();
    QVERIFY(!find("main")); // the window itself counts
    QCOMPARE(error(), text("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::onlyVisiblePassesOverHiddenWidgets()
{
    left->findChild<QWidget*>(text("ok"))->hide();
    QCOMPARE(find("ok"), right->findChild<QWidget*>(text("ok")));
    right->findChild<QWidget*>(text("cancel"))->hide();
    QVERIFY(!find("cancel"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QCOMPARE(find("cancel", QString(), nullptr, false), right->findChild<QWidget*>(text("cancel")));
    main->hide();
    QVERIFY(!find("main"));
    QVERIFY(!find("main", QString(), main.get()));
    QCOMPARE(find("main", QString(), nullptr, false), main.get());
}

void tst_HierarchicalSearch::widgetBelowAHiddenOneIsHidden()
{
    left->hide();
    QVERIFY(!find("left/ok"));
    QCOMPARE(find("ok"), right->findChild<QWidget*>(text("ok")));
    QVERIFY(find("left/ok", QString(), nullptr, false));
}

void tst_HierarchicalSearch::dialogWithAParentIsFoundOnce()
{
    auto* dialog = add<QDialog>(main.get(), "dialog");
    dialog->show();
    QCOMPARE(find("dialog"), dialog);
    QCOMPARE(find("main/dialog"), dialog);
    QVERIFY(!find("*/dialog")); // it has a parent
}

void tst_HierarchicalSearch::widgetInADialogWithAParentIsAmbiguousWithoutWindow()
{
    auto* dialog = add<QDialog>(main.get(), "dialog");
    dialog->setWindowTitle(text("Options"));
    QWidget* const apply = add<QPushButton>(dialog, "apply");
    dialog->show();
    QVERIFY(!find("apply"));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    QCOMPARE(find("apply", QString(), dialog), apply);
    QCOMPARE(find("apply", text("Options")), apply);
}

void tst_HierarchicalSearch::emptyElementFindsUnnamedWidgets()
{
    auto* unnamed = new QWidget(left);
    unnamed->show();
    QCOMPARE(find("left/"), unnamed);
    QVERIFY(!find("right/"));
}

void tst_HierarchicalSearch::descentNeedsTheOnlyWayDown_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* name, const char* found, const char* error) {
        QTest::newRow(name) << text(name) << text(found) << text(error);
    };
    row("single/*", "", "WidgetAmbiguousError"); // the widget there has a child
    row("single/*/*", "leaf", "NoError");
    row("single/*/*/*", "", "WidgetNotFoundError");
    row("leaf/*", "", "WidgetNotFoundError");
    row("right/*", "", "WidgetAmbiguousError"); // two children
    row("left/*", "ok", "NoError");
    row("fork/*", "", "WidgetAmbiguousError");
    row("fork/*/*", "deep", "NoError"); // one of the two ways is shorter
    row("nobody/*", "", "WidgetNotFoundError");
    row("ok/*", "", "WidgetAmbiguousError"); // the named widget itself
}

void tst_HierarchicalSearch::descentNeedsTheOnlyWayDown()
{
    add<QWidget>(add<QWidget>(add<QWidget>(other.get(), "single"), "middle"), "leaf");
    QWidget* const fork = add<QWidget>(other.get(), "fork");
    add<QWidget>(fork, "short");
    add<QWidget>(add<QWidget>(fork, "long"), "deep");
    new QObject(fork); // no widget, does not count
    for (QWidget* widget : other->findChildren<QWidget*>())
        widget->show();

    QFETCH(QString, name);
    QFETCH(QString, found);
    QFETCH(QString, error);
    const QWidget* result = find(name.toLatin1().constData());
    QCOMPARE(result ? result->objectName() : text(""), found);
    QCOMPARE(this->error(), error);
}

void tst_HierarchicalSearch::descentCountsHiddenChildrenButDoesNotReturnThem()
{
    QWidget* const ok = left->findChild<QWidget*>(text("ok"));
    ok->hide();
    QVERIFY(!find("left/*"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QCOMPARE(find("left/*", QString(), nullptr, false), ok);
    add<QWidget>(left, "shown")->show();
    QVERIFY(!find("left/*"));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
}

QTEST_MAIN(tst_HierarchicalSearch)
#include "tst_hierarchicalsearch.moc"
