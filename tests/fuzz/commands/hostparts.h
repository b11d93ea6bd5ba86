#pragma once

#include <QListWidget>
#include <QMenu>
#include <QTableWidget>
#include <QTreeWidget>
#include <QWidget>

class QComboBox;

// Parts of which the widgets of RichHost are made.
namespace hostparts {

// Items with every flag and with texts that have the separators of addresses.
void fill(QComboBox* box, bool editable);
QListWidget* fill(QListWidget* list);
void fill(QTreeWidget* tree);
void fill(QTableWidget* table);
void setModel(QAbstractItemView* view);
// Loses its last row whenever its current row changes.
void shrinkOnKeys(QListWidget* list);

// A menu of items, submenus and separators; one that has other items each time it opens.
QMenu* newMenu(QWidget* parent);
void rebuild(QMenu* menu);

struct DialogKind
{
    const char* name;
    void (*open)(QWidget* parent);
};
QList<DialogKind> dialogKinds();

// An item view of no class that the agent knows.
class PlainView : public QAbstractItemView
{
public:
    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex&, ScrollHint) override { }
    QModelIndex indexAt(const QPoint&) const override { return QModelIndex(); }

protected:
    QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return QModelIndex(); }
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override { return 0; }
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override { }
    QRegion visualRegionForSelection(const QItemSelection&) const override { return QRegion(); }
};

// Opens a menu by exec() in the handler of the event that asks for it.
class MenuArea : public QWidget
{
protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
};

} // namespace hostparts
