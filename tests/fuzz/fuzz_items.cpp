// Addresses of items and cells. The first line of the input is an address, the others are a model (items/itemviews.h).
// Rules: every kind of view finds what a slow and obvious search finds, with the same error where it finds nothing, and
// what a tree lists it also finds.

#include "fuzzing.h"
#include "items/itemviews.h"
#include "items/naiveitems.h"
#include "items/served.h"
#include "proxies/views/itemaddress.h"
#include "proxies/views/treeitempath.h"
#include "proxy/stapplicationproxy.h"

#include <QListView>
#include <QTableView>
#include <QTreeView>

using fuzzing::check;

namespace {

class AddressCheck
{
public:
    AddressCheck(const ItemViews& itemViews, const QString& text, const QString& message)
        : views(itemViews)
        , address(text)
        , detail(message)
    {
    }

    void all()
    {
        treePaths();
        treeItem();
        listItem();
        tableCell();
        modelItem();
    }

private:
    Served property(QWidget* view, const char* name) const
    {
        static auto* registry = new STApplicationProxy;
        return served([&] { return registry->property(view, QString(), QLatin1String(name), address); });
    }

    void treePaths()
    {
        const QTreeView& view = *views.tree();
        const QStringList paths = views::treeItemPaths(view);
        check(paths == naive::treePaths(view, QModelIndex(), QString()), "the paths of a tree", detail);
        for (const QString& path : paths) {
            const QModelIndex item = views::findItem(view, path);
            check(item == naive::treeItem(view, path.split(QLatin1Char('/')), QModelIndex()), "a listed item", detail);
            check(item.isValid() || !textsArePlain(), "every listed item is found", detail);
            check(views::itemPathOf(view, item) == naive::treePath(view, item), "the path of an item", detail);
        }
    }

    // Whether no text has the separators of paths.
    bool textsArePlain() const { return !detail.contains(QLatin1Char('/')) && !detail.contains(QLatin1Char(':')); }

    void treeItem()
    {
        const QTreeView& view = *views.tree();
        const QModelIndex expected = naive::treeItem(view, address.split(QLatin1Char('/')), QModelIndex());
        check(views::findItem(view, address) == expected, "the item at a tree path", detail);
        const Served path = property(views.tree(), "itemPath");
        if (!expected.isValid())
            check(path.error == QLatin1String("Invalid item path"), "no item at a tree path", detail);
        else if (path.error.isEmpty())
            check(path.value.toString() == naive::treePath(view, expected), "the path at a tree path", detail);
        else
            check(
                view.isRowHidden(expected.row(), expected.parent()) || view.isColumnHidden(0), "a hidden item", detail);
    }

    void listItem()
    {
        const QModelIndex expected = naive::listItem(*views.list(), address);
        const Served enabled = property(views.list(), "itemIsEnabled");
        check(enabled.value.toBool() == (expected.isValid() && !address.isEmpty()), "the item of a text in a list",
            detail);
        check(enabled.error.isEmpty() == enabled.value.toBool(), "an item or an error in a list", detail);
    }

    void tableCell()
    {
        const naive::Found expected = naive::tableCell(*views.table(), address);
        const Served text = property(views.table(), "itemText");
        check(text.error == expected.error, "the error of a cell address", detail + QLatin1Char('\n') + text.error);
        check(text.value.toString() == expected.index.data().toString(), "the cell at a cell address", detail);
    }

    void modelItem()
    {
        const naive::Found expected = naive::modelItem(views.model(), address);
        const Served index = served([&] { return views::indexAtPath(views.model(), address); });
        check(index.error == expected.error, "the error of a model path", detail + QLatin1Char('\n') + index.error);
        check(
            !index.error.isEmpty() || index.value.toModelIndex() == expected.index, "the item at a model path", detail);
    }

    const ItemViews& views;
    const QString address;
    const QString detail;
};

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static auto* views = new ItemViews;
    const QStringList lines = fuzzing::linesOf(data, size);
    views->fill(lines.mid(1));
    AddressCheck(*views, lines.first(), fuzzing::printable(lines.join(QLatin1String("\n")))).all();
    return 0;
}
