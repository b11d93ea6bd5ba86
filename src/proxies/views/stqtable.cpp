#include "proxies/views/stqtable.h"

#include "compat/stacking.h"
#include "compat/variant.h"
#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"
#include "proxy/textparts.h"

#include <QTableWidget>

namespace {

const char missingCellMessage[] = "Missing item cell";
const char syntaxMessage[] = "Syntax Error, format \"%%r:%%c\" expected";
const char notEnabledMessage[] = "table is not enabled";
const char noFocusMessage[] = "Oops, cant set the focus to the table";
const char invalidIntegerMessage[] = "Invalid integer";

const views::PerHeader<const char*> ambiguousMessages
    = {"Same row name at row %d and %d", "Same column name at column %d and %d"};
const views::PerHeader<const char*> unknownMessages = {"Row %s not found", "Column %s not found"};
const views::PerHeader<const char*> outOfRangeMessages
    = {"Invalid row %d is out of range [1, %d]", "Invalid column %d is out of range [1, %d]"};
const views::PerHeader<const char*> hiddenMessages = {"row %d is hidden", "column %d is hidden"};
const views::PerHeader<const char*> missingNumberMessages = {"Missing row number", "Missing column number"};
// "col" where all others have "column": tests compare the text.
const views::PerHeader<const char*> headerOutOfRangeMessages
    = {"Invalid row %d is out of range [1, %d]", "Invalid col %d is out of range [1, %d]"};

QVariant rowCount(const QAbstractItemView& view)
{
    return view.inherits("QTableWidget") ? static_cast<const QTableWidget&>(view).rowCount()
                                         : views::rowCountUnderRoot(view);
}

QVariant columnCount(const QAbstractItemView& view)
{
    return view.inherits("QTableWidget") ? static_cast<const QTableWidget&>(view).columnCount()
                                         : views::columnCountUnderRoot(view);
}

const views::ViewProperty viewProperties[] = {
    {"rowCount", rowCount},
    {"columnCount", columnCount},
    {"currentRow", [](const QAbstractItemView& view) -> QVariant { return view.currentIndex().row() + 1; }},
    {"currentColumn", [](const QAbstractItemView& view) -> QVariant { return view.currentIndex().column() + 1; }},
};

const views::ItemProperty itemProperties[] = {
    {"itemText",
        [](const QAbstractItemView&, const QModelIndex& cell) -> QVariant { return views::displayText(cell); }},
};

} // namespace

const proxy::PseudoProperty<STQTable&, const QVariant&> STQTable::headerProperties[] = {
    {"rowHeaderText",
        [](STQTable& table, const QVariant& argument) { return table.headerTextAt(Qt::Vertical, argument); }},
    {"columnHeaderText",
        [](STQTable& table, const QVariant& argument) { return table.headerTextAt(Qt::Horizontal, argument); }},
};

void STQTable::activate(const QVariant& value, const QVariant&)
{
    const Cell cell = resolveCell(value, HiddenSections::Named);
    goTo(views::ItemPlace(*tableView(), cell.row, cell.column));
}

void STQTable::lookForItem(const QVariant& value)
{
    requireEnabled(itemIndex(value), value);
}

void STQTable::enter(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    const QModelIndex current = tableView()->currentIndex();
    goTo(views::ItemPlace(*tableView(), current.row(), current.column()));
    replaceTextInEditor(value.toString());
}

void STQTable::mouseAction(const QVariant& command)
{
    playMouseAtCurrentItem(command, Visibility::Ignored);
}

QModelIndex STQTable::itemIndex(const QVariant& item)
{
    const Cell cell = resolveCell(item, HiddenSections::Named);
    requireShown(Qt::Vertical, cell.row);
    requireShown(Qt::Horizontal, cell.column);
    return views::cellAt(tableView()->model(), cell.row, cell.column, tableView()->rootIndex());
}

void STQTable::goTo(const views::ItemPlace& place)
{
    focusTable();
    moveToCell(place.row(), place.column());
}

void STQTable::focusTable()
{
    keepKeysInView();
    if (tableView()->hasFocus())
        return;
    tableView()->raise();
    syncEvents();
    compat::activateWindow(tableView());
    syncEvents();
    for (int attempt = 0; attempt < 2; ++attempt) {
        tableView()->setFocus(Qt::OtherFocusReason);
        syncEvents();
        if (tableView()->hasFocus())
            return;
    }
    proxy::raiseError(noFocusMessage);
}

void STQTable::moveToCell(int row, int column)
{
    if (!tableView()->isEnabled())
        proxy::raiseError(notEnabledMessage);
    requireShown(Qt::Vertical, row);
    requireShown(Qt::Horizontal, column);
    const views::ItemPlace place(*tableView(), row, column);
    moveToColumn(place);
    const int currentRow = tableView()->currentIndex().row();
    if (currentRow != place.row())
        pressUntil(Axis::Rows, place, place.row() > currentRow ? Qt::Key_Down : Qt::Key_Up, Qt::NoModifier);
}

void STQTable::moveToColumn(const views::ItemPlace& place)
{
    const QTableView* table = tableView();
    const int current = table->currentIndex().column();
    if (current == place.column())
        return;
    const bool forward = place.column() > current;
    // Where every cell that becomes current opens its editor, the editor gets the arrow keys. Tab leaves it.
    if ((table->editTriggers() & QAbstractItemView::CurrentChanged) && table->tabKeyNavigation())
        pressUntil(Axis::Columns, place, Qt::Key_Tab, forward ? Qt::NoModifier : Qt::ShiftModifier);
    else
        pressUntil(Axis::Columns, place, forward ? Qt::Key_Right : Qt::Key_Left, Qt::NoModifier);
}

STQTable::Cell STQTable::resolveCell(const QVariant& address, HiddenSections hidden)
{
    if (!address.isValid())
        proxy::raiseError(missingCellMessage);
    if (compat::typeOf(address) != QMetaType::QString)
        typeError("string");
    const QStringList parts = proxy::firstParts(address.toString(), QLatin1Char(':'), 2);
    if (parts.size() < 2)
        proxy::raiseError(syntaxMessage);
    const int row = resolveSection(Qt::Vertical, parts.at(0), hidden);
    return {row, resolveSection(Qt::Horizontal, parts.at(1), hidden)};
}

int STQTable::resolveSection(Qt::Orientation header, const QString& text, HiddenSections hidden)
{
    const int named = findSection(header, text, hidden, 0);
    if (named >= 0) {
        const int second = findSection(header, text, hidden, named + 1);
        if (second >= 0)
            proxy::raiseError(ambiguousMessages[header], named + 1, second + 1);
        return named;
    }
    bool ok = false;
    const int number = compat::toInt(text, &ok);
    if (!ok)
        proxy::raiseNotYet(proxy::missingItem(text), unknownMessages[header], text);
    requireInRange(number, header, outOfRangeMessages[header]);
    return number - 1;
}

int STQTable::findSection(Qt::Orientation header, const QString& text, HiddenSections hidden, int from)
{
    const QTableView* table = tableView();
    if (!table->model())
        return -1;
    const int count = views::sectionCountUnderRoot(*table, header);
    int section = views::findHeaderText(*table->model(), header, text, from, count);
    while (section >= 0 && hidden == HiddenSections::Skipped && isHidden(header, section))
        section = views::findHeaderText(*table->model(), header, text, section + 1, count);
    return section;
}

void STQTable::requireInRange(int number, Qt::Orientation header, const char* errorMessage)
{
    const int count = views::sectionCountUnderRoot(*tableView(), header);
    if (number < 1 || number > count)
        proxy::raiseNotYet(proxy::missingItem(number), errorMessage, number, count);
}

bool STQTable::isHidden(Qt::Orientation header, int section)
{
    const QTableView* table = tableView();
    return header == Qt::Vertical ? table->isRowHidden(section) : table->isColumnHidden(section);
}

void STQTable::requireShown(Qt::Orientation header, int section)
{
    if (isHidden(header, section))
        proxy::raiseNotYet(proxy::hiddenItem(QString::number(section + 1)), hiddenMessages[header], section + 1);
}

QStringList STQTable::pseudoPropertyNames()
{
    return proxy::namesOf(viewProperties) + proxy::namesOf(itemProperties) + proxy::namesOf(headerProperties);
}

QVariant STQTable::pseudoProperty(const char* name, const QVariant& argument)
{
    if (proxy::rowOf(headerProperties, name))
        return proxy::valueOf(headerProperties, name, *this, argument);
    if (!proxy::rowOf(viewProperties, name) && !proxy::rowOf(itemProperties, name))
        return QVariant();
    return views::propertyValue(viewProperties, itemProperties, name, *tableView(), [&] {
        const Cell cell = resolveCell(argument, HiddenSections::Skipped);
        return tableView()->model()->index(cell.row, cell.column, tableView()->rootIndex());
    });
}

QVariant STQTable::headerTextAt(Qt::Orientation header, const QVariant& argument)
{
    if (!argument.isValid())
        proxy::raiseError(missingNumberMessages[header]);
    const int type = compat::typeOf(argument);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("string, int");
    bool ok = false;
    const int number = argument.toInt(&ok);
    if (!ok)
        proxy::raiseError(invalidIntegerMessage);
    requireInRange(number, header, headerOutOfRangeMessages[header]);
    requireShown(header, number - 1);
    return views::headerText(*tableView()->model(), number - 1, header);
}

QTableView* STQTable::tableView()
{
    return static_cast<QTableView*>(checkedWidget("QTableView"));
}
