#pragma once

#include "proxies/views/itemviewproxy.h"
#include "proxy/pseudoproperties.h"

class QTableView;

// Tables. A cell is addressed by a text "row:column"; each is the text of a header section, which must be
// unique, or else a number from 1. Rows and columns are 0-based in here, and 1-based in all messages.
class STQTable : public views::ItemViewProxy
{
public:
    // A cell address: moves the current cell there with the keyboard. `option` is ignored.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // A text: replaces the current cell's text in its editor.
    void enter(const QVariant& value) override;
    // Goes to the current cell's centre, visible or not; see ItemMouseCommand.
    void mouseAction(const QVariant& command) override;
    // "rowCount", "columnCount", "currentRow" and "currentColumn" (from 1, 0 for none); "itemText" by a cell
    // address; "rowHeaderText" and "columnHeaderText" by a number from 1.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

protected:
    QModelIndex itemIndex(const QVariant& item) override;

private:
    static const proxy::PseudoProperty<STQTable&, const QVariant&> headerProperties[2];

    enum class HiddenSections { Named, Skipped };
    struct Cell
    {
        int row;
        int column;
    };

    QTableView* tableView();
    // The cell at an address. Header texts of hidden rows and columns count as names, or are skipped.
    Cell resolveCell(const QVariant& address, HiddenSections hidden);
    int resolveSection(Qt::Orientation header, const QString& text, HiddenSections hidden);
    int findSection(Qt::Orientation header, const QString& text, HiddenSections hidden, int from);
    // Raises an error for a header section whose number, from 1, is out of range.
    void requireInRange(int number, Qt::Orientation header, const char* errorMessage);
    bool isHidden(Qt::Orientation header, int section);
    void requireShown(Qt::Orientation header, int section);

    void goTo(const views::ItemPlace& place);
    void focusTable();
    void moveToCell(int row, int column);
    void moveToColumn(const views::ItemPlace& place);
    QVariant headerTextAt(Qt::Orientation header, const QVariant& argument);
};
