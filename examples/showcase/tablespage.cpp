#include "tablespage.h"

#include "beanmodel.h"
#include "journal.h"
#include "named.h"
#include "regions.h"

#include <QColumnView>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>

namespace {

/// A box that holds nothing but \a view.
QGroupBox* boxed(const QString& title, QWidget* view, QWidget* parent)
{
    auto* box = new QGroupBox(title, parent);
    auto* column = new QVBoxLayout(box);
    column->addWidget(view);
    return box;
}

} // namespace

TablesPage::TablesPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 14, 14, 14);
    grid->setSpacing(12);
    grid->addWidget(makeBeans(), 0, 0);
    grid->addWidget(makePrices(), 0, 1);
    grid->addWidget(makeColumns(), 1, 0, 1, 2);
    grid->setRowStretch(0, 3);
    grid->setRowStretch(1, 2);
    journal.watch(this);
}

QWidget* TablesPage::makeBeans()
{
    auto* table = named(new QTableView(this), "beanTable");
    table->setModel(new BeanModel(table));
    table->setAlternatingRowColors(true);
    table->verticalHeader()->setDefaultSectionSize(24);
    table->horizontalHeader()->setDefaultSectionSize(88);
    table->horizontalHeader()->setStretchLastSection(true);
    return boxed(tr("Beans in store"), table, this);
}

QWidget* TablesPage::makePrices()
{
    const char* const drinks[] = {"Espresso", "Cortado", "Cappuccino", "Flat white", "Filter", "Cold brew"};
    const double smallPrices[] = {2.20, 2.80, 3.20, 3.40, 2.60, 3.80};
    auto* table = named(new QTableWidget(6, 3, this), "priceTable");
    table->setHorizontalHeaderLabels(QStringList() << tr("Small") << tr("Medium") << tr("Large"));
    for (int row = 0; row < table->rowCount(); ++row) {
        table->setVerticalHeaderItem(row, new QTableWidgetItem(QLatin1String(drinks[row])));
        for (int column = 0; column < table->columnCount(); ++column) {
            const QString price = QString::number(smallPrices[row] + 0.6 * column, 'f', 2);
            table->setItem(row, column, new QTableWidgetItem(price)); // the table's, as the header's
        }
    }
    table->verticalHeader()->setDefaultSectionSize(24);
    for (int column = 0; column < table->columnCount(); ++column)
        table->setColumnWidth(column, 76);
    table->horizontalHeader()->setStretchLastSection(true);
    return boxed(tr("Prices"), table, this);
}

QWidget* TablesPage::makeColumns()
{
    auto* view = named(new QColumnView(this), "regionColumns");
    auto* model = new QStandardItemModel(view);
    fillRegions(*model);
    view->setModel(model);
    return boxed(tr("Find a farm"), view, this);
}
