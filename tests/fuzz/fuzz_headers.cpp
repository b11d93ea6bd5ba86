// Addresses of header sections. The first line of the input is an address, the others are a model (items/itemviews.h).
// Rules: the same sections and errors as by a slow and obvious reading.

#include "fuzzing.h"
#include "items/itemviews.h"
#include "items/naiveitems.h"
#include "items/served.h"
#include "proxies/views/itemaddress.h"
#include "proxy/stapplicationproxy.h"

#include <QTableView>
#include <QTreeView>

using fuzzing::check;

namespace {

Served property(QWidget* view, const char* className, const char* name, const QString& argument)
{
    static auto* registry = new STApplicationProxy;
    return served([&] { return registry->property(view, QLatin1String(className), QLatin1String(name), argument); });
}

void checkHeaderAddress(const ItemViews& views, const QString& text, const QString& detail)
{
    naive::Found expected;
    const bool isAddress = naive::headerSection(views.model(), text, expected);
    views::ItemAddress address = {QModelIndex(), -1, -1};
    const Served read = served([&] { return views::readHeaderAddress(views.model(), text, address); });
    check(read.error == expected.error, "the error of a header address", detail + QLatin1Char('\n') + read.error);
    check(!read.error.isEmpty() || read.value.toBool() == isAddress, "what is a header address", detail);
    check(address.row == expected.row && address.column == expected.column, "the section of an address", detail);
    if (!isAddress || !read.error.isEmpty())
        return;
    const bool rows = expected.row >= 0;
    const QVariant data = views.model().headerData(
        rows ? expected.row : expected.column, rows ? Qt::Vertical : Qt::Horizontal, Qt::DisplayRole);
    const Served itemData = property(views.tree(), "QAbstractItemView", "itemData", text);
    check(itemData.value == data, "the data of a header section", detail);
    property(views.table(), "QAbstractItemView", "itemPosition", text);
    const Served position = property(views.tree(), "QAbstractItemView", "itemPosition", text);
    check(rows == !position.error.isEmpty(), "a tree has no vertical header", detail);
}

void checkHeaderText(const ItemViews& views, Qt::Orientation orientation, const QString& number, const QString& detail)
{
    const bool rows = orientation == Qt::Vertical;
    const naive::Found expected = naive::tableHeader(*views.table(), orientation, number);
    const Served text = property(views.table(), "", rows ? "rowHeaderText" : "columnHeaderText", number);
    check(text.error == expected.error, "the error of a header's number", detail + QLatin1Char('\n') + text.error);
    if (text.error.isEmpty())
        check(text.value.toString()
                == views.model().headerData(rows ? expected.row : expected.column, orientation).toString(),
            "the text of a header section", detail);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static auto* views = new ItemViews;
    const QStringList lines = fuzzing::linesOf(data, size);
    const QString detail = fuzzing::printable(lines.join(QLatin1String("\n")));
    views->fill(lines.mid(1));
    checkHeaderAddress(*views, lines.first(), detail);
    checkHeaderText(*views, Qt::Vertical, lines.first(), detail);
    checkHeaderText(*views, Qt::Horizontal, lines.first(), detail);
    return 0;
}
