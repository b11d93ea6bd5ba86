// The search for widgets by hierarchical name, and what its error says.

#include "bridge/csquishproxy.h"
#include "bridge/nameprovider.h"
#include "hierarchicalnames.h"

#include <QtTest/QtTest>

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QSystemTrayIcon>

#include <memory>

using LmSquishProxy::CSquishProxy;
using LmSquishProxy::NameProvider;
using LmSquishProxy::setNameProvider;

namespace {

template <class Widget> Widget* add(QWidget* parent, const char* name)
{
    auto* widget = new Widget(parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

// Names objects by a dynamic property.
class PropertyProvider final : public NameProvider
{
public:
    PropertyProvider() { setNameProvider(this); }
    ~PropertyProvider() { setNameProvider(nullptr); }
    Q_DISABLE_COPY(PropertyProvider)

    QString name(const QObject* object) override
    {
        asked << object;
        return object->property("providedName").toString();
    }

    QList<const QObject*> asked;
};

} // namespace

class tst_HierarchicalSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listWithoutNamesIsInvalid_data();
    void listWithoutNamesIsInvalid();
    void oneNullFindsAWindowByTitle();
    void oneNullIgnoresTheGivenWindow();
    void titleOfNoWindowIsNoError();
    void twoWindowsOfOneTitleAreAmbiguous();
    void titlePatterns_data();
    void titlePatterns();

    void windowItselfIsFound();
    void titleChoosesTheWindow();
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

    void providerNamesWidgetsThatHaveNone();
    void providerIsNotAskedForObjectsWithAName();
    void providedNamesFitAncestors();

    void trayIconsAreFoundByName();
    void errorIsSharedByAllObjects();

private:
    QWidget* find(const char* name, const QString& title = QString(), QWidget* window = nullptr,
        bool onlyVisible = true, bool pattern = false)
    {
        return proxy->findWidgetByHierarchicalName(
            hierarchicalName(name), title, window, onlyVisible, pattern);
    }
    QString error() { return proxy->getLastError(); }

    std::unique_ptr<CSquishProxy> proxy;
    // main "Editor": left { ok }, right { ok, cancel }; other "Editor 2"; both shown
    std::unique_ptr<QWidget> main;
    std::unique_ptr<QWidget> other;
    QWidget* left = nullptr;
    QWidget* right = nullptr;
};

void tst_HierarchicalSearch::init()
{
    proxy.reset(new CSquishProxy("proxy"));
    main.reset(add<QWidget>(nullptr, "main"));
    main->setWindowTitle(text("Editor"));
    left = add<QWidget>(main.get(), "left");
    right = add<QWidget>(main.get(), "right");
    add<QPushButton>(left, "ok");
    add<QPushButton>(right, "ok");
    add<QPushButton>(right, "cancel");
    main->show();
    other.reset(add<QWidget>(nullptr, "other"));
    other->setWindowTitle(text("Editor 2"));
    other->show();
}

void tst_HierarchicalSearch::cleanup()
{
    main.reset();
    other.reset();
    proxy.reset();
}

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

void tst_HierarchicalSearch::oneNullFindsAWindowByTitle()
{
    QCOMPARE(find("*", text("Editor")), main.get());
    QCOMPARE(error(), text("NoError"));
    main->hide();
    QVERIFY(!find("*", text("Editor")));
    QCOMPARE(find("*", text("Editor"), nullptr, false), main.get());
    main->setWindowTitle(QString());
    main->show();
    QCOMPARE(find("*", text("")), main.get()); // an empty title is a title
}

void tst_HierarchicalSearch::oneNullIgnoresTheGivenWindow()
{
    QCOMPARE(find("*", text("Editor"), other.get()), main.get());
}

void tst_HierarchicalSearch::titleOfNoWindowIsNoError()
{
    find("nobody");
    QVERIFY(!find("*", text("Nothing")));
    QCOMPARE(error(), text("NoError"));
}

void tst_HierarchicalSearch::twoWindowsOfOneTitleAreAmbiguous()
{
    other->setWindowTitle(text("Editor"));
    QVERIFY(!find("*", text("Editor")));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    other->hide();
    QCOMPARE(find("*", text("Editor")), main.get());
    QVERIFY(!find("*", text("Editor"), nullptr, false));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
}

void tst_HierarchicalSearch::titlePatterns_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char* title, const char* pattern, bool fits) {
        QTest::newRow(pattern) << text(title) << text(pattern) << fits;
    };
    row("Report 7", "Report*", true);
    row("Report 7", "Repor", false);
    row("Report 7", "*port 7", true);
    row("Report 7", "Report ?", true);
    row("Report 7", "Report ??", false);
    row("Report 7", "Report [5-8]", true);
    row("Report 7", "Report [a-z]", false);
    row("Report 7", "report*", false);
    row("Report 7", "Report 7", true);
    row("Report (7)", "Report (?)", true);
    row("Report *", "Report \\*", true);
    row("Report 7", "Report \\*", false);
    row("a/b", "a*b", true);
    row("Report 7", "Report [7", false);
    row("", "*", true);
}

void tst_HierarchicalSearch::titlePatterns()
{
    QFETCH(QString, title);
    QFETCH(QString, pattern);
    QFETCH(bool, fits);
    main->setWindowTitle(title);
    QWidget* const expected = fits ? main.get() : nullptr;
    other->hide();
    QCOMPARE(find("*", pattern, nullptr, true, true), expected);
    QCOMPARE(find("main", pattern, nullptr, true, true), expected);
    QCOMPARE(find("main", pattern), title == pattern ? main.get() : nullptr);
}

void tst_HierarchicalSearch::windowItselfIsFound()
{
    QCOMPARE(find("main"), main.get());
    QCOMPARE(find("*/main"), main.get());
    QVERIFY(!find("*/left"));
    QVERIFY(!find("any/main"));
    QCOMPARE(error(), text("WidgetNotFoundError"));
}

void tst_HierarchicalSearch::titleChoosesTheWindow()
{
    QWidget* const ok = add<QWidget>(other.get(), "cancel");
    ok->show();
    QVERIFY(!find("cancel"));
    QCOMPARE(find("cancel", text("Editor 2")), ok);
    QVERIFY(!find("cancel", text("Editor 3")));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QVERIFY(!find("cancel", text(""))); // not null: only windows without title
    QCOMPARE(find("cancel", text("*2"), nullptr, true, true), ok);
}

void tst_HierarchicalSearch::givenWindowIsTheOnlyOneSearched()
{
    QCOMPARE(find("cancel", QString(), main.get()), right->findChild<QWidget*>(text("cancel")));
    QVERIFY(!find("cancel", QString(), other.get()));
    QVERIFY(!find("cancel", text("Editor 2"), main.get()));
    QCOMPARE(
        find("main/right", QString(), right), right); // any widget will do; ancestors are not bounded by it
    QCOMPARE(find("right/ok", QString(), right), right->findChild<QWidget*>(text("ok")));
}

void tst_HierarchicalSearch::deletedWindowFindsNothing()
{
    auto* const gone = add<QWidget>(other.get(), "gone");
    other.reset();
    QVERIFY(!find("main", QString(), gone));
    QCOMPARE(error(), text("WidgetNotFoundError"));
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

void tst_HierarchicalSearch::providerNamesWidgetsThatHaveNone()
{
    auto* unnamed = new QWidget(left);
    unnamed->setProperty("providedName", text("given"));
    unnamed->show();
    QVERIFY(!find("given"));
    const PropertyProvider provider;
    QCOMPARE(find("given"), unnamed);
    QCOMPARE(find("cancel"), right->findChild<QWidget*>(text("cancel")));
    left->hide();
    QVERIFY(!find("given"));
    QCOMPARE(find("given", QString(), nullptr, false), unnamed);
}

void tst_HierarchicalSearch::providerIsNotAskedForObjectsWithAName()
{
    auto* emptied = add<QWidget>(left, "once");
    emptied->setObjectName(text("")); // set, though empty
    emptied->setProperty("providedName", text("given"));
    emptied->show();
    const PropertyProvider provider;
    QVERIFY(!find("given"));
    QWidget* const widgets[] = {main.get(), left, emptied};
    for (QWidget* named : widgets)
        QVERIFY(!provider.asked.contains(named));
    QCOMPARE(find("left/"), emptied);
}

void tst_HierarchicalSearch::providedNamesFitAncestors()
{
    auto* group = new QWidget(left);
    group->setProperty("providedName", text("group"));
    QWidget* const inside = add<QWidget>(group, "inside");
    group->show();
    QVERIFY(!find("group/inside"));
    const PropertyProvider provider;
    QCOMPARE(find("group/inside"), inside);
    QVERIFY(!find("left/inside"));
}

void tst_HierarchicalSearch::trayIconsAreFoundByName()
{
    std::unique_ptr<QSystemTrayIcon> ofApplication(new QSystemTrayIcon(qApp));
    ofApplication->setObjectName(text("tray"));
    auto* ofWidget = new QSystemTrayIcon(left);
    ofWidget->setObjectName(text("status"));
    (new QObject(left))->setObjectName(text("object"));

    QCOMPARE(proxy->findTrayIcon(text("tray")), static_cast<QObject*>(ofApplication.get()));
    QCOMPARE(error(), text("NoError"));
    QCOMPARE(proxy->findTrayIcon(text("status")), static_cast<QObject*>(ofWidget));
    QVERIFY(!proxy->findTrayIcon(text("object")));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QVERIFY(!proxy->findTrayIcon(QString())); // not any, but one without name
    QCOMPARE(error(), text("WidgetNotFoundError"));

    ofWidget->setObjectName(text("tray"));
    QVERIFY(!proxy->findTrayIcon(text("tray")));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    ofApplication.reset();
    QCOMPARE(proxy->findTrayIcon(text("tray")), static_cast<QObject*>(ofWidget));
}

void tst_HierarchicalSearch::errorIsSharedByAllObjects()
{
    CSquishProxy second("second");
    QVERIFY(!find("nobody"));
    QCOMPARE(second.getLastError(), text("WidgetNotFoundError"));
    second.findTrayIcon(text("nothing"));
    QVERIFY(find("main"));
    QCOMPARE(second.getLastError(), text("NoError"));
    QVERIFY(!second.findWidgetByHierarchicalName(QStringList()));
    QCOMPARE(error(), text("InvalidWidgetPath"));
}

QTEST_MAIN(tst_HierarchicalSearch)
#include "tst_hierarchicalsearch.moc"
