#include "containerspage.h"

#include "journal.h"
#include "named.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBox>

ContainersPage::ContainersPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
    , m_dayLabel(named(new QLabel(this), "dayLabel"))
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 14, 14, 14);
    grid->setSpacing(12);
    grid->addWidget(makeMenuCard(), 0, 0);
    grid->addWidget(makeRecipes(), 0, 1);
    grid->addWidget(makeShelf(), 0, 2, 2, 1);
    grid->addWidget(makeRoaster(tr("First roaster"), "firstRoaster"), 1, 0);
    grid->addWidget(makeRoaster(tr("Second roaster"), "secondRoaster"), 1, 1);
    grid->addWidget(makeWeek(), 2, 0, 1, 3);
    for (int column = 0; column < 3; ++column)
        grid->setColumnStretch(column, 1);
    grid->setRowStretch(0, 1);

    m_journal.watch(this);
    const char* const startNames[] = {"firstRoaster", "secondRoaster"};
    for (const char* name : startNames) {
        const QWidget* roaster = findChild<QWidget*>(QLatin1String(name));
        connect(
            roaster->findChild<QPushButton*>(QLatin1String("startButton")), SIGNAL(clicked()), SLOT(startRoaster()));
        connect(roaster->findChild<QPushButton*>(QLatin1String("discardButton")), SIGNAL(clicked()), SLOT(discard()));
    }
    connect(findChild<QTabBar*>(QLatin1String("weekBar")), SIGNAL(currentChanged(int)), SLOT(showDay(int)));
}

QWidget* ContainersPage::makeMenuCard()
{
    const QString drinks[] = {tr("Espresso"), tr("Filter"), tr("Cold brew")};
    const QString advice[]
        = {tr("Short and strong.\n18 g in, 36 g out."), tr("Slow and clear.\n60 g to the litre."), tr("Wait a night.")};
    const char* const names[] = {"espressoButton", "filterButton", "coldBrewButton"};
    auto* tabs = named(new QTabWidget(this), "menuCard");
    for (int index = 0; index < 3; ++index) {
        auto* page = new QWidget(tabs);
        auto* column = new QVBoxLayout(page);
        column->addWidget(new QLabel(advice[index], page));
        column->addWidget(named(new QPushButton(tr("Order %1").arg(drinks[index]), page), names[index]));
        column->addStretch();
        tabs->addTab(page, drinks[index]);
    }
    return tabs;
}

QWidget* ContainersPage::makeRecipes()
{
    auto* box = named(new QToolBox(this), "recipeBox");
    const QString recipes[][2] = {{tr("French press"), tr("Water just off the boil.\nStir once, wait a minute.")},
        {tr("Pour over"), tr("Rinse the paper.\nPour in slow circles.")}};
    for (const auto& recipe : recipes) {
        auto* text = new QLabel(recipe[1], box);
        text->setAlignment(Qt::AlignTop | Qt::AlignLeading);
        text->setMargin(10);
        box->addItem(text, recipe[0]);
    }
    box->addItem(named(new QPushButton(tr("Ask for the secret"), box), "secretButton"), tr("House secret"));
    return box;
}

QWidget* ContainersPage::makeShelf()
{
    auto* area = named(new QScrollArea(this), "shelfArea");
    auto* shelf = named(new QWidget(area), "shelf");
    auto* column = new QVBoxLayout(shelf);
    for (int number = 1; number <= 20; ++number) {
        auto* button = new QPushButton(tr("Bag %1").arg(number), shelf);
        button->setObjectName(QString::fromLatin1("bag%1Button").arg(number));
        column->addWidget(button);
    }
    area->setWidget(shelf);
    area->setWidgetResizable(true);
    return area;
}

QWidget* ContainersPage::makeWeek()
{
    auto* row = new QWidget(this);
    auto* bar = named(new QTabBar(row), "weekBar");
    const QStringList days = tr("Monday,Tuesday,Wednesday,Thursday,Friday").split(QLatin1Char(','));
    for (const QString& day : days)
        bar->addTab(day);
    bar->setTabEnabled(2, false); // closed in the middle of the week
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar);
    layout->addWidget(m_dayLabel, 1);
    showDay(0);
    return row;
}

/// The same widgets for each roaster, with the same names.
QWidget* ContainersPage::makeRoaster(const QString& title, const char* name)
{
    auto* box = named(new QGroupBox(title, this), name);
    auto* loadSpin = named(new QSpinBox(box), "loadSpin");
    loadSpin->setRange(1, 15);
    loadSpin->setSuffix(tr(" kg"));
    auto* startButton = named(new QPushButton(tr("Start"), box), "startButton");
    auto* discardButton = named(new QPushButton(tr("Discard"), box), "discardButton");
    discardButton->setToolTip(tr("Discards the batch and with it this button"));
    auto* grid = new QGridLayout(box);
    grid->addWidget(new QLabel(tr("Load:"), box), 0, 0);
    grid->addWidget(loadSpin, 0, 1);
    grid->addWidget(startButton, 1, 0);
    grid->addWidget(discardButton, 1, 1);
    return box;
}

void ContainersPage::startRoaster()
{
    const QWidget* roaster = qobject_cast<QWidget*>(sender()->parent());
    const auto* loadSpin = roaster->findChild<QSpinBox*>(QLatin1String("loadSpin"));
    m_journal.record("started", roaster->objectName(), QString::number(loadSpin->value()));
}

void ContainersPage::discard()
{
    m_journal.record("discarded", sender()->parent()->objectName());
    sender()->deleteLater();
}

void ContainersPage::showDay(int day)
{
    const int hour = day == 4 ? 9 : 7;
    m_dayLabel->setText(tr("Open from %1 to 18").arg(hour));
}
