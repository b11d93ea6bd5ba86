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

const PerHeader<const char*> ambiguousMessages
    = {"Same row name at row %d and %d", "Same column name at column %d and %d"};
const PerHeader<const char*> unknownMessages = {"Row %s not found", "Column %s not found"};
const PerHeader<const char*> outOfRangeMessages
    = {"Invalid row %d is out of range [1, %d]", "Invalid column %d is out of range [1, %d]"};
const PerHeader<const char*> hiddenMessages = {"row %d is hidden", "column %d is hidden"};
const PerHeader<const char*> missingNumberMessages = {"Missing row number", "Missing column number"};
// "col" where all others have "column": tests compare the text.
const PerHeader<const char*> headerOutOfRangeMessages
    = {"Invalid row %d is out of range [1, %d]", "Invalid col %d is out of range [1, %d]"};

QVariant rowCount(const QAbstractItemView& view)
{
    return view.inherits("QTableWidget") ? static_cast<const QTableWidget&>(view).rowCount() : rowCountUnderRoot(view);
}

QVariant columnCount(const QAbstractItemView& view)
{
    return view.inherits("QTableWidget") ? static_cast<const QTableWidget&>(view).columnCount()
                                         : columnCountUnderRoot(view);
}

const ViewProperty viewProperties[] = {
    {"rowCount", rowCount},
    {"columnCount", columnCount},
    {"currentRow", [](const QAbstractItemView& view) -> QVariant { return view.currentIndex().row() + 1; }},
    {"currentColumn", [](const QAbstractItemView& view) -> QVariant { return view.currentIndex().column() + 1; }},
};

const ItemProperty itemProperties[] = {
    {"itemText", [](const QAbstractItemView&, const QModelIndex& cell) -> QVariant { return displayText(cell); }},
};

} // namespace

const PseudoProperty<STQTable&, const QVariant&> STQTable::headerProperties[] = {
    {"rowHeaderText",
        [](STQTable& table, const QVariant& argument) { return table.headerTextAt(Qt::Vertical, argument); }},
    {"columnHeaderText",
        [](STQTable& table, const QVariant& argument) { return table.headerTextAt(Qt::Horizontal, argument); }},
};

void STQTable::activate(const QVariant& value, const QVariant&)
{
    const Cell cell = resolveCell(value, HiddenSections::Named);
    goTo(ItemPlace(*tableView(), cell.row, cell.column));
}

void STQTable::enter(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    const QModelIndex current = tableView()->currentIndex();
    goTo(ItemPlace(*tableView(), current.row(), current.column()));
    replaceTextInEditor(value.toString());
}

void STQTable::mouseAction(const QVariant& command)
{
    playMouseAtCurrentItem(command, Visibility::Ignored);
}

void STQTable::goTo(const ItemPlace& place)
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
    raiseError(noFocusMessage);
}

void STQTable::moveToCell(int row, int column)
{
    if (!tableView()->isEnabled())
        raiseError(notEnabledMessage);
    requireShown(Qt::Vertical, row);
    requireShown(Qt::Horizontal, column);
    const ItemPlace place(*tableView(), row, column);
    moveToColumn(place);
    const int currentRow = tableView()->currentIndex().row();
    if (currentRow != place.row())
        pressUntil(Axis::Rows, place, place.row() > currentRow ? Qt::Key_Down : Qt::Key_Up, Qt::NoModifier);
}

void STQTable::moveToColumn(const ItemPlace& place)
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
        raiseError(missingCellMessage);
    if (compat::typeOf(address) != QMetaType::QString)
        typeError("string");
    const QStringList parts = firstParts(address.toString(), QLatin1Char(':'), 2);
    if (parts.size() < 2)
        raiseError(syntaxMessage);
    const int row = resolveSection(Qt::Vertical, parts.at(0), hidden);
    return {row, resolveSection(Qt::Horizontal, parts.at(1), hidden)};
}

int STQTable::resolveSection(Qt::Orientation header, const QString& text, HiddenSections hidden)
{
    const int named = findSection(header, text, hidden, 0);
    if (named >= 0) {
        const int second = findSection(header, text, hidden, named + 1);
        if (second >= 0)
            raiseError(ambiguousMessages[header], named + 1, second + 1);
        return named;
    }
    bool ok = false;
    const int number = compat::toInt(text, &ok);
    if (!ok)
        raiseError(unknownMessages[header], text);
    requireInRange(number, header, outOfRangeMessages[header]);
    return number - 1;
}

int STQTable::findSection(Qt::Orientation header, const QString& text, HiddenSections hidden, int from)
{
    const QTableView* table = tableView();
    if (!table->model())
        return -1;
    const int count = sectionCountUnderRoot(*table, header);
    int section = findHeaderText(*table->model(), header, text, from, count);
    while (section >= 0 && hidden == HiddenSections::Skipped && isHidden(header, section))
        section = findHeaderText(*table->model(), header, text, section + 1, count);
    return section;
}

void STQTable::requireInRange(int number, Qt::Orientation header, const char* errorMessage)
{
    const int count = sectionCountUnderRoot(*tableView(), header);
    if (number < 1 || number > count)
        raiseError(errorMessage, number, count);
}

bool STQTable::isHidden(Qt::Orientation header, int section)
{
    const QTableView* table = tableView();
    return header == Qt::Vertical ? table->isRowHidden(section) : table->isColumnHidden(section);
}

void STQTable::requireShown(Qt::Orientation header, int section)
{
    if (isHidden(header, section))
        raiseError(hiddenMessages[header], section + 1);
}

QStringList STQTable::pseudoPropertyNames()
{
    return namesOf(viewProperties) + namesOf(itemProperties) + namesOf(headerProperties);
}

QVariant STQTable::pseudoProperty(const char* name, const QVariant& argument)
{
    if (rowOf(headerProperties, name))
        return valueOf(headerProperties, name, *this, argument);
    if (!rowOf(viewProperties, name) && !rowOf(itemProperties, name))
        return QVariant();
    return valueOf(viewProperties, itemProperties, name, *tableView(), [&] {
        const Cell cell = resolveCell(argument, HiddenSections::Skipped);
        return tableView()->model()->index(cell.row, cell.column, tableView()->rootIndex());
    });
}

QVariant STQTable::headerTextAt(Qt::Orientation header, const QVariant& argument)
{
    if (!argument.isValid())
        raiseError(missingNumberMessages[header]);
    const int type = compat::typeOf(argument);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("string, int");
    bool ok = false;
    const int number = argument.toInt(&ok);
    if (!ok)
        raiseError(invalidIntegerMessage);
    requireInRange(number, header, headerOutOfRangeMessages[header]);
    requireShown(header, number - 1);
    return headerText(*tableView()->model(), number - 1, header);
}

QTableView* STQTable::tableView()
{
    return static_cast<QTableView*>(checkedWidget("QTableView"));
}
