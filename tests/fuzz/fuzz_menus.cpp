// Menu paths. The first line of the input is a path, the others are a menu (menus/menuitem.h). Rules: the same items,
// lists, answers and errors as by a slow and obvious reading; and, when the path begins with "@", which is no part of it,
// choosing it in the open menu triggers just that item.

#include "fuzzing.h"
#include "items/served.h"
#include "menus/fuzzmenu.h"
#include "menus/naivemenus.h"
#include "proxies/menus/menuitems.h"
#include "proxy/stapplicationproxy.h"

#include <QApplication>
#include <QMenu>

using fuzzing::check;

namespace {

STApplicationProxy& registry()
{
    static auto* proxies = new STApplicationProxy;
    return *proxies;
}

QString answer(QWidget* widget, const char* property, const QString& path)
{
    const Served read = served([&] { return registry().property(widget, QString(), QLatin1String(property), path); });
    return read.error.isEmpty() ? read.value.toString() : read.error;
}

void checkProperties(const FuzzMenu& host, const naive::Items& items, const QString& path, const QString& detail)
{
    const QStringList elements = path.split(QLatin1Char('/'));
    const QStringList list = naive::menuItemList(items);
    check(menus::menuItemList(host.menu()->actions()) == list, "the list of a menu's items", detail);
    check(menus::menuItemList(host.menuBar()->actions()) == list, "the list of a bar's items", detail);

    const auto same = [&](const QString& actual, const QString& expected, const char* rule) {
        check(actual == expected.left(2047), rule,
            detail + QLatin1Char('\n') + fuzzing::printable(actual) + QLatin1Char('\n') + fuzzing::printable(expected));
    };
    same(answer(host.menu(), "pathDisabled", path), naive::menuPathDisabled(items, elements), "pathDisabled of a menu");
    same(
        answer(host.menuBar(), "pathDisabled", path), naive::barPathDisabled(items, elements), "pathDisabled of a bar");
    same(answer(host.menuBar(), "pathChecked", path), naive::barPathChecked(items, elements), "pathChecked");
}

void checkFinding(const FuzzMenu& host, const naive::Items& items, const QString& path, const QString& detail)
{
    QStringList rest = menus::splitMenuPath(path);
    const QStringList elements = path.split(QLatin1Char('/'));
    const naive::FoundItem expected = naive::findMenuItem(items, elements);
    const QAction* found = menus::findMenuItem(host.menu()->actions(), rest);
    check((found != nullptr) == (expected.item != nullptr), "whether a path names an item", detail);
    if (!found)
        return;
    check(found->objectName() == QString::number(expected.item->line), "the item of a path", detail);
    check(rest.mid(1) == elements.mid(expected.length), "what is left of a path", detail);
}

void checkChoosing(const FuzzMenu& host, const naive::Items& items, const QString& path, const QString& detail)
{
    const QString expected = naive::chosenItem(items, path.split(QLatin1Char('/')));
    host.menu()->popup(QPoint(10, 10));
    QCoreApplication::processEvents();
    const bool opened = QApplication::activePopupWidget() == host.menu(); // a menu without items does not open
    const Served choice = served([&] {
        registry().activate(host.menu(), QString(), path, QVariant());
        return true;
    });
    QCoreApplication::processEvents();
    const QString outcome = choice.error.isEmpty() ? host.triggered().join(QLatin1String("|")) : choice.error;
    check(outcome == (opened ? expected : QLatin1String("No focus")), "the chosen item",
        detail + QLatin1Char('\n') + outcome + QLatin1Char('\n') + expected);
    check(outcome.isEmpty() || !QApplication::activePopupWidget(), "all menus are closed afterwards", detail);
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    const QStringList lines = fuzzing::linesOf(data, size);
    const QString detail = fuzzing::printable(lines.join(QLatin1String("\n")));
    const naive::Items items = menuOf(lines.mid(1));
    const FuzzMenu host(items);
    const bool chooses = lines.first().startsWith(QLatin1Char('@'));
    const QString path = lines.first().mid(chooses ? 1 : 0);
    checkFinding(host, items, path, detail);
    checkProperties(host, items, path, detail);
    if (chooses)
        checkChoosing(host, items, path, detail);
    return 0;
}
