#include "listspage.h"

#include "journal.h"
#include "named.h"
#include "regions.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTreeView>
#include <QTreeWidget>

namespace {

QTreeWidgetItem* blendItem(QTreeWidgetItem* parent, const QString& name, const QString& share)
{
    auto* item = new QTreeWidgetItem(parent, QStringList() << name << share); // the parent's
    item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    return item;
}

} // namespace

ListsPage::ListsPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
    , m_extras(named(new QListWidget(this), "extrasList"))
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 14, 14, 14);
    grid->setSpacing(12);
    grid->addWidget(makeExtras(), 0, 0);
    grid->addWidget(makeBlends(), 0, 1);
    grid->addWidget(makeOrigins(), 1, 0);
    grid->addWidget(makeRegions(), 1, 1);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);

    m_journal.watch(this);
    m_extras->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_extras, SIGNAL(customContextMenuRequested(QPoint)), SLOT(showExtrasMenu(QPoint)));
}

/// The view under a caption whose buddy it is.
QWidget* ListsPage::titled(const QString& title, QWidget* view)
{
    auto* cell = new QWidget(this);
    auto* label = new QLabel(title, cell);
    label->setBuddy(view);
    auto* column = new QVBoxLayout(cell);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(label);
    column->addWidget(view);
    return cell;
}

QWidget* ListsPage::makeExtras()
{
    const char* const names[] = {"Oat milk", "Honey", "Cinnamon", "Vanilla", "Cocoa", "Cardamom", "Whipped cream",
        "Caramel", "Nutmeg", "Maple syrup"};
    for (const char* name : names) {
        auto* item = new QListWidgetItem(QLatin1String(name), m_extras); // the list's
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
    }
    m_extras->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return titled(tr("E&xtras (right-click for more)"), m_extras);
}

QWidget* ListsPage::makeOrigins()
{
    auto* view = named(new QListView(this), "originView");
    const QStringList names = tr("Brazil,Burundi,Colombia,Costa Rica,Ethiopia,Guatemala,Honduras,India,Jamaica,Kenya,"
                                 "Mexico,Nicaragua,Panama,Peru,Rwanda,Sumatra,Tanzania,Vietnam,Yemen")
                                  .split(QLatin1Char(','));
    view->setModel(new QStringListModel(names, view));
    return titled(tr("&Origins (double-click to rename)"), view);
}

QWidget* ListsPage::makeBlends()
{
    auto* tree = named(new QTreeWidget(this), "blendTree");
    tree->setHeaderLabels(QStringList() << tr("Blend") << tr("Share"));
    QTreeWidgetItem* house = blendItem(tree->invisibleRootItem(), tr("House"), tr("60 %"));
    QTreeWidgetItem* espresso = blendItem(house, tr("Espresso"), tr("40 %"));
    blendItem(espresso, tr("Santos"), tr("25 %"));
    blendItem(espresso, tr("Monsoon"), tr("15 %"));
    blendItem(blendItem(house, tr("Filter"), tr("20 %")), tr("Huila"), tr("20 %"));
    QTreeWidgetItem* season = blendItem(tree->invisibleRootItem(), tr("Season"), tr("40 %"));
    blendItem(blendItem(season, tr("Winter"), tr("40 %")), tr("Antigua"), tr("40 %"));
    tree->setSortingEnabled(true);
    tree->sortByColumn(0, Qt::AscendingOrder);
    house->setExpanded(true);
    tree->setColumnWidth(0, 220);
    return titled(tr("B&lends"), tree);
}

QWidget* ListsPage::makeRegions()
{
    auto* view = named(new QTreeView(this), "regionTree");
    auto* model = new QStandardItemModel(view);
    fillRegions(*model);
    model->setHorizontalHeaderLabels(QStringList(tr("Farm")));
    view->setModel(model);
    view->expand(model->index(0, 0));
    return titled(tr("&Farms by region"), view);
}

void ListsPage::showExtrasMenu(const QPoint& position)
{
    m_journal.record("context menu", m_extras->objectName());
    auto* menu = named(new QMenu(m_extras), "extrasMenu"); // deleted below
    const QAction* checkAll = named(menu->addAction(tr("Check all")), "checkAllAction");
    const QAction* uncheckAll = named(menu->addAction(tr("Uncheck all")), "uncheckAllAction");
    menu->addSeparator();
    named(menu->addAction(tr("Order more")), "orderMoreAction")->setEnabled(false);
    m_journal.watch(menu);
    const QAction* chosen = menu->exec(m_extras->viewport()->mapToGlobal(position));
    menu->deleteLater();
    if (!chosen || (chosen != checkAll && chosen != uncheckAll))
        return;
    for (int row = 0; row < m_extras->count(); ++row)
        m_extras->item(row)->setCheckState(chosen == checkAll ? Qt::Checked : Qt::Unchecked);
}
