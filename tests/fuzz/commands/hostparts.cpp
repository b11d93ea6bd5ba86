#include "hostparts.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardItemModel>
#include <QtCore/QDir>

namespace hostparts {

namespace {

const char* const texts[] = {"Alpha", "Beta", "Beta", "", "a/b", "x:y", "Item 1", "&Gamma", "\xe4\xdf"};

QStandardItem* newItem(int number)
{
    const int textCount = sizeof texts / sizeof *texts;
    auto* item = new QStandardItem(QLatin1String(texts[number % textCount]));
    item->setEnabled(number % 5 != 4);
    item->setSelectable(number % 7 != 6);
    item->setEditable(number % 3 != 2);
    item->setCheckable(number % 2 == 0);
    return item;
}

void addRows(QStandardItem* parent, int depth)
{
    const int rows = 5;
    const int columns = 3;
    for (int row = 0; row < rows; ++row) {
        QList<QStandardItem*> cells;
        for (int column = 0; column < columns; ++column)
            cells.append(newItem(row + column + depth));
        parent->appendRow(cells);
        if (depth > 0 && row % 2 == 0)
            addRows(cells.first(), depth - 1);
    }
}

// Deletes itself when it is closed, as dialogs of applications do.
template <class Dialog>
Dialog* openDialog(QWidget* parent, const char* name)
{
    auto* dialog = new Dialog(parent);
    dialog->setObjectName(QLatin1String(name));
    dialog->setWindowTitle(QLatin1String(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

void openInput(QWidget* parent)
{
    auto* dialog = openDialog<QInputDialog>(parent, "");
    dialog->setLabelText(QLatin1String("Name"));
    dialog->open();
}

void openMessage(QWidget* parent)
{
    auto* box = openDialog<QMessageBox>(parent, "message");
    box->setText(QLatin1String("Sure?"));
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->open();
}

void openFile(QWidget* parent)
{
    auto* dialog = openDialog<QFileDialog>(parent, "file");
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setOption(QFileDialog::ReadOnly); // nothing of the machine's is renamed or deleted
    dialog->setDirectory(QDir::tempPath());
    dialog->open();
}

void runDialog(QWidget* parent)
{
    QDialog dialog(parent);
    dialog.setObjectName(QLatin1String("executed"));
    dialog.setWindowTitle(QLatin1String("Executed"));
    QPushButton button(QLatin1String("Close"), &dialog);
    QObject::connect(&button, &QPushButton::clicked, &dialog, &QDialog::accept);
    dialog.exec();
}

} // namespace

void fill(QComboBox* box, bool editable)
{
    for (const char* text : texts)
        box->addItem(QLatin1String(text));
    box->setEditable(editable);
}

QListWidget* fill(QListWidget* list)
{
    for (const char* text : texts)
        list->addItem(QLatin1String(text));
    list->item(0)->setFlags(list->item(0)->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    list->item(0)->setCheckState(Qt::Unchecked);
    list->item(2)->setHidden(true);
    return list;
}

void fill(QTreeWidget* tree)
{
    tree->setColumnCount(2);
    for (const char* text : texts) {
        auto* item = new QTreeWidgetItem(tree, QStringList(QLatin1String(text)) << QLatin1String("two"));
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setCheckState(0, Qt::PartiallyChecked);
        new QTreeWidgetItem(item, QStringList(QLatin1String("child")));
    }
}

void fill(QTableWidget* table)
{
    const int size = 4;
    table->setRowCount(size);
    table->setColumnCount(size);
    for (int i = 0; i < size * size; i += 2)
        table->setItem(i / size, i % size, new QTableWidgetItem(QString::number(i)));
    table->setHorizontalHeaderLabels(
        QStringList() << QLatin1String("2") << QLatin1String("Twin") << QLatin1String("Twin"));
}

void setModel(QAbstractItemView* view)
{
    auto* model = new QStandardItemModel(view);
    addRows(model->invisibleRootItem(), 1);
    model->setVerticalHeaderLabels(QStringList() << QLatin1String("First") << QLatin1String("2"));
    view->setModel(model);
}

void shrinkOnKeys(QListWidget* list)
{
    QObject::connect(list, &QListWidget::currentRowChanged, [list] { delete list->takeItem(list->count() - 1); });
}

QMenu* newMenu(QWidget* parent)
{
    auto* menu = new QMenu(parent);
    for (const char* text : texts)
        menu->addAction(QLatin1String(text));
    menu->addSeparator();
    QMenu* below = menu->addMenu(QLatin1String("Sub/menu"));
    QAction* toggled = below->addAction(QLatin1String("Toggled"));
    toggled->setCheckable(true);
    below->addAction(QLatin1String("Disabled"))->setEnabled(false);
    below->addMenu(QLatin1String("Empty"));
    return menu;
}

void rebuild(QMenu* menu)
{
    menu->clear();
    menu->addAction(QLatin1String("Clear"), menu, [menu] { menu->clear(); });
    menu->addAction(QLatin1String("Again"));
}

QList<DialogKind> dialogKinds()
{
    return {{"openinput", openInput}, {"openmessage", openMessage}, {"openfile", openFile}, {"exec", runDialog}};
}

QRect PlainView::visualRect(const QModelIndex& index) const
{
    const int height = 10;
    return QRect(0, index.row() * height, width(), height);
}

void MenuArea::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu;
    menu.addAction(QLatin1String("Here"));
    menu.exec(event->globalPos());
}

} // namespace hostparts
