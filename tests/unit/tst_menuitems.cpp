// Finding menu items by paths, and listing the paths of all items.

#include "proxies/menus/menuitems.h"
#include "unittests.h"

#include <QAction>
#include <QMenu>
#include <QTest>

namespace {

// A menu of one item per text: "-" a separator, "!TEXT" a hidden item, "TEXT>" an item with an empty submenu.
void fill(QMenu* menu, const QStringList& texts)
{
    for (const QString& text : texts) {
        if (text.endsWith(QLatin1Char('>'))) {
            menu->addMenu(text.left(text.size() - 1));
            continue;
        }
        QAction* action = menu->addAction(text.startsWith(QLatin1Char('!')) ? text.mid(1) : text);
        action->setVisible(!text.startsWith(QLatin1Char('!')));
        action->setSeparator(text == QLatin1String("-"));
    }
}

QStringList split(const char* text, char separator)
{
    return QString::fromLatin1(text).split(QLatin1Char(separator));
}

} // namespace

class tst_MenuItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemText_data();
    void itemText();
    void aSeparatorHasANullText();
    void find_data();
    void find();
    void nothingIsFoundInAnEmptyMenuOrByAnEmptyPath();
    void list_data();
    void list();
    void aMenuThatContainsItselfIsListedOnce();
    void splitKeepsEmptyElements();
};

void tst_MenuItems::itemText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const char* const rows[][2] = {{"&Save", "Save"}, {"Sa&ve", "Save"}, {"Drag && drop", "Drag & drop"},
        {"&Drag && drop", "Drag && drop"}, {"Print\tCtrl+P", "Print Ctrl+P"}, {"  a \n b ", "a b"}, {"", ""}, {"&", ""},
        {" & ", ""}, {"Item 1", "Item 1"}};
    for (const auto& row : rows)
        QTest::newRow(row[0]) << QString::fromLatin1(row[0]) << QString::fromLatin1(row[1]);
}

void tst_MenuItems::itemText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const QAction action(text, nullptr);
    QCOMPARE(menus::menuItemText(&action), expected);
}

void tst_MenuItems::aSeparatorHasANullText()
{
    QAction action(QLatin1String("Title"), nullptr);
    action.setSeparator(true);
    QVERIFY(menus::menuItemText(&action).isNull());
    const QStringList list = menus::menuItemList(QList<QAction*>() << &action);
    QCOMPARE(int(list.size()), 1);
    QVERIFY(list.first().isNull());
}

namespace {

struct SearchExample
{
    const char* name;
    const char* texts; // of the menu, joined by "|"
    const char* path;
    int position; // of the action that is found, -1 for none
    const char* first; // the path's elements afterwards, joined by "|"
};

const SearchExample searchExamples[] = {
    {"the first of equal texts", "a|b|b", "b/c", 1, "b|c"},
    {"none", "a|b", "c", -1, "c"},
    {"case matters", "a|b", "B", -1, "B"},
    {"no prefix", "abc", "ab", -1, "ab"},
    {"the mnemonic does not count", "a|&b", "b", 1, "b"},
    {"a mnemonic in the path does", "a|&b", "&b", -1, "&b"},
    {"an empty text", "a||b", "", 1, ""},
    {"separators are skipped", "a|-|b", "-", -1, "-"},
    {"hidden items are skipped", "a|!b|b", "b", 2, "b"},
    {"index of the first", "a|b", "Item 0", 0, "Item 0"},
    {"index of countable items only", "-|!x|a|-|b", "Item 1/x", 4, "Item 1|x"},
    {"index beyond the end", "a|b", "Item 2", -1, "Item 2"},
    {"negative index", "a|b", "Item -1", -1, "Item -1"},
    {"no number", "a|Item x", "Item x", -1, "Item x"},
    {"an index is never a text", "a|b|Item 0", "Item 0", 0, "Item 0"},
    {"an index is decimal", "a|b", "Item 0x1", -1, "Item 0x1"},
    {"an index needs its blank", "a|Item", "Item", 1, "Item"},
    {"an index is case-sensitive", "a|b", "item 1", -1, "item 1"},
    {"a slash in the text", "a|A/B", "A/B/C", 1, "A/B|C"},
    {"a slash in the text of the last", "a|A/B", "A/B", 1, "A/B"},
    {"two slashes", "A/x|A/B/C", "A/B/C/D", 1, "A/B/C|D"},
    {"a slash and a mnemonic", "A/&B", "A/B", 0, "A/B"},
    {"too few elements for the slashes", "A/B/C", "A/B", -1, "A|B"},
    {"the plain text wins over the slash", "A/B|A", "A/B", 1, "A|B"},
    {"the first item with slashes that fits wins", "A/B|A/B/C", "A/B/C", 0, "A/B|C"},
    {"only slashes", "/", "/", 0, "/"},
};

} // namespace

void tst_MenuItems::find_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("first");
    for (const SearchExample& row : searchExamples)
        QTest::newRow(row.name) << QString::fromLatin1(row.texts) << QString::fromLatin1(row.path) << row.position
                                << QString::fromLatin1(row.first);
}

void tst_MenuItems::find()
{
    QFETCH(QString, texts);
    QFETCH(QString, path);
    QFETCH(int, position);
    QFETCH(QString, first);
    QMenu menu;
    fill(&menu, texts.split(QLatin1Char('|')));
    QStringList elements = menus::splitMenuPath(path);
    const QAction* found = menus::findMenuItem(menu.actions(), elements);
    QCOMPARE(found ? static_cast<int>(menu.actions().indexOf(const_cast<QAction*>(found))) : -1, position);
    QCOMPARE(elements.join(QLatin1String("|")), first);
}

void tst_MenuItems::nothingIsFoundInAnEmptyMenuOrByAnEmptyPath()
{
    QMenu menu;
    QStringList path = split("Item 0", '/');
    QVERIFY(!menus::findMenuItem(menu.actions(), path));
    menu.addAction(QString());
    QStringList empty;
    QVERIFY(!menus::findMenuItem(menu.actions(), empty));
}

void tst_MenuItems::list_data()
{
    QTest::addColumn<QString>("top");
    QTest::addColumn<QString>("inSubmenu"); // of the top's first item with a submenu
    QTest::addColumn<QString>("expected");
    struct Row
    {
        const char* name;
        const char* top;
        const char* inSubmenu;
        const char* expected;
    };
    const Row rows[] = {
        {"the first level, unfiltered", "a|-|!b||&c", "", "a||b||c"},
        {"a submenu replaces its item", "a|s>|b", "x|&y", "a|s/x|s/y|b"},
        {"a submenu counts visible items from 1", "s>", "-|x|!h||y|", "s/x|s/Item 2|s/y|s/Item 4"},
        {"submenus count too", "s>", "t>|", "s/Item 2"},
        {"an empty submenu has no entry", "a|s>", "-", "a"},
        {"a submenu without a title", ">", "x", "/x"},
    };
    for (const Row& row : rows)
        QTest::newRow(row.name) << QString::fromLatin1(row.top) << QString::fromLatin1(row.inSubmenu)
                                << QString::fromLatin1(row.expected);
}

void tst_MenuItems::list()
{
    QFETCH(QString, top);
    QFETCH(QString, inSubmenu);
    QFETCH(QString, expected);
    QMenu menu;
    fill(&menu, top.split(QLatin1Char('|')));
    const QList<QAction*> actions = menu.actions();
    for (const QAction* action : actions) {
        if (QMenu* submenu = action->menu()) {
            fill(submenu, inSubmenu.split(QLatin1Char('|')));
            break;
        }
    }
    QCOMPARE(menus::menuItemList(actions).join(QLatin1String("|")), expected);
}

void tst_MenuItems::aMenuThatContainsItselfIsListedOnce()
{
    QMenu menu;
    QMenu* loop = menu.addMenu(QLatin1String("loop"));
    loop->addAction(QLatin1String("x"));
    loop->addAction(loop->menuAction());
    QCOMPARE(menus::menuItemList(menu.actions()), split("loop/x|loop/loop", '|'));
}

void tst_MenuItems::splitKeepsEmptyElements()
{
    QCOMPARE(menus::splitMenuPath(QLatin1String("a//b/")), split("a||b|", '|'));
    QCOMPARE(menus::splitMenuPath(QString()).size(), 1);
}

UNIT_TESTS(tst_menuitems, unit::withApplication<tst_MenuItems>)
#include "tst_menuitems.moc"
