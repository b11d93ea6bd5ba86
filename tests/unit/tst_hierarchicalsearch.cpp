// The search for widgets by hierarchical name, and what its error says.

#include "searchwindows.h"
#include "unittests.h"

#include <QTest>

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
    void widgetsBesideOneThatIsBeingDeletedAreFound();
    void descentCountsHiddenChildrenButDoesNotReturnThem();
};

void tst_HierarchicalSearch::widgetsBesideOneThatIsBeingDeletedAreFound()
{
    bool isChildGone = false;
    QObject* found = nullptr;
    QObject* onlyChild = nullptr;
    new DestructorCall(left, [&] {
        isChildGone = left->children().contains(nullptr);
        found = find("left/late", QString(), main.get(), false); // what is being deleted is hidden
        onlyChild = find("left/*", QString(), main.get(), false);
    });
    const QObject* late = add<QPushButton>(left, "late");
    delete left;
    QVERIFY(isChildGone);
    QVERIFY(found == late);
    QVERIFY(onlyChild == late);
}

void tst_HierarchicalSearch::listWithoutNamesIsInvalid_data()
{
    QTest::addColumn<QStringList>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("empty list") << QStringList() << QString();
    QTest::newRow("empty list and title") << QStringList() << latin1("Editor");
    QTest::newRow("one null without title") << hierarchicalName("*") << QString();
    QTest::newRow("two nulls and title") << hierarchicalName("*/*") << latin1("Editor");
}

void tst_HierarchicalSearch::listWithoutNamesIsInvalid()
{
    QFETCH(QStringList, name);
    QFETCH(QString, title);
    QVERIFY(!proxy->findWidgetByHierarchicalName(name, title));
    QCOMPARE(error(), latin1("InvalidWidgetPath"));
}

void tst_HierarchicalSearch::windowItselfIsFound()
{
    QCOMPARE(find("main"), main.get());
    QCOMPARE(find("*/main"), main.get());
    QVERIFY(!find("*/left"));
    QVERIFY(!find("any/main"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
}

void tst_HierarchicalSearch::givenWindowIsTheOnlyOneSearched()
{
    QCOMPARE(find("cancel", QString(), main.get()), right->findChild<QWidget*>(latin1("cancel")));
    QVERIFY(!find("cancel", QString(), other.get()));
    QVERIFY(!find("cancel", latin1("Editor 2"), main.get()));
    QCOMPARE(find("main/right", QString(), right), right); // any widget will do; ancestors are not bounded by it
    QCOMPARE(find("right/ok", QString(), right), right->findChild<QWidget*>(latin1("ok")));
}

void tst_HierarchicalSearch::deletedWindowFindsNothing()
{
    auto* const gone = add<QWidget>(other.get(), "gone");
    other.reset();
    QVERIFY(!find("main", QString(), gone));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QCOMPARE(find("*", latin1("Editor"), gone), main.get()); // by its title, wherever a name would be searched
    QCOMPARE(error(), latin1("NoError"));
    QVERIFY(!find("*/*", latin1("Editor"), gone));
    QCOMPARE(error(), latin1("InvalidWidgetPath"));
}

void tst_HierarchicalSearch::unknownNameIsNotFound()
{
    QVERIFY(!find("nobody"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QVERIFY(find("left"));
    QCOMPARE(error(), latin1("NoError"));
}

void tst_HierarchicalSearch::wrongAncestorsAreNotFound()
{
    QCOMPARE(find("left/ok"), left->findChild<QWidget*>(latin1("ok")));
    QCOMPARE(find("*/main/right/ok"), right->findChild<QWidget*>(latin1("ok")));
    QVERIFY(!find("main/ok"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QVERIFY(!find("main/*/ok")); // both
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::sameNameInTwoWindowsIsAmbiguous()
{
    QWidget* const hidden = add<QWidget>(other.get(), "cancel");
    hidden->hide();
    QVERIFY(!find("cancel", QString(), nullptr, false));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    QCOMPARE(find("cancel"), right->findChild<QWidget*>(latin1("cancel")));
    other->hide();
    QVERIFY(!find("cancel", QString(), nullptr, false));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::sameNameTwiceInOneWindowIsAmbiguous()
{
    QVERIFY(!find("ok"));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    add<QWidget>(main.get(), "main")->show();
    QVERIFY(!find("main")); // the window itself counts
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::onlyVisiblePassesOverHiddenWidgets()
{
    left->findChild<QWidget*>(latin1("ok"))->hide();
    QCOMPARE(find("ok"), right->findChild<QWidget*>(latin1("ok")));
    right->findChild<QWidget*>(latin1("cancel"))->hide();
    QVERIFY(!find("cancel"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QCOMPARE(find("cancel", QString(), nullptr, false), right->findChild<QWidget*>(latin1("cancel")));
    main->hide();
    QVERIFY(!find("main"));
    QVERIFY(!find("main", QString(), main.get()));
    QCOMPARE(find("main", QString(), nullptr, false), main.get());
}

void tst_HierarchicalSearch::widgetBelowAHiddenOneIsHidden()
{
    left->hide();
    QVERIFY(!find("left/ok"));
    QCOMPARE(find("ok"), right->findChild<QWidget*>(latin1("ok")));
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
    dialog->setWindowTitle(latin1("Options"));
    QWidget* const apply = add<QPushButton>(dialog, "apply");
    dialog->show();
    QVERIFY(!find("apply"));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    QCOMPARE(find("apply", QString(), dialog), apply);
    QCOMPARE(find("apply", latin1("Options")), apply);
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
        QTest::newRow(name) << latin1(name) << latin1(found) << latin1(error);
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
    QCOMPARE(result ? result->objectName() : latin1(""), found);
    QCOMPARE(this->error(), error);
}

void tst_HierarchicalSearch::descentCountsHiddenChildrenButDoesNotReturnThem()
{
    QWidget* const ok = left->findChild<QWidget*>(latin1("ok"));
    ok->hide();
    QVERIFY(!find("left/*"));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QCOMPARE(find("left/*", QString(), nullptr, false), ok);
    add<QWidget>(left, "shown")->show();
    QVERIFY(!find("left/*"));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
}

UNIT_TESTS(tst_hierarchicalsearch, unit::withApplication<tst_HierarchicalSearch>)
#include "tst_hierarchicalsearch.moc"
