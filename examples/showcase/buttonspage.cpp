#include "buttonspage.h"

#include "journal.h"
#include "look.h"
#include "machinebox.h"
#include "named.h"
#include "tastingpad.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>

ButtonsPage::ButtonsPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
    , m_cups(0)
    , m_clickCount(named(new QLabel(QLatin1String("0"), this), "clickCount"))
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 14, 14, 14);
    grid->setSpacing(12);
    QWidget* const cells[2][3] = {{makeCounter(), makeRoasts(), makeExtras()},
        {named(new MachineBox(journal, this), "machineBox"), makeDelivery(), makePad()}};
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column)
            grid->addWidget(cells[row][column], row, column);
        grid->setRowStretch(row, 1);
    }
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 2);

    m_journal.watch(this);
    connect(findChild<QPushButton*>(QLatin1String("brewButton")), SIGNAL(clicked()), SLOT(brew()));
    connect(findChild<QPushButton*>(QLatin1String("serveButton")), SIGNAL(clicked()), SLOT(serve()));
}

QWidget* ButtonsPage::makeCounter()
{
    auto* box = named(new QGroupBox(tr("Counter"), this), "counterBox");
    auto* brewButton = named(new QPushButton(Look::cup(), tr("&Brew a cup"), box), "brewButton");
    brewButton->setIconSize(QSize(16, 16));
    auto* grindButton = new QPushButton(tr("Grind"), box); // without an object name
    auto* refillButton = named(new QPushButton(tr("Refill water"), box), "refillButton");
    refillButton->setEnabled(false);
    auto* serveButton = named(new QPushButton(tr("&Serve"), box), "serveButton");
    serveButton->setDefault(true);
    auto* milkButton = named(new QPushButton(tr("Milk"), box), "milkButton");
    auto* milkMenu = named(new QMenu(milkButton), "milkMenu");
    named(milkMenu->addAction(tr("Whole milk")), "wholeMilkAction");
    named(milkMenu->addAction(tr("Oat milk")), "oatMilkAction");
    milkButton->setMenu(milkMenu);

    auto* waiting = new QHBoxLayout;
    waiting->addWidget(new QLabel(tr("Cups waiting:"), box));
    waiting->addWidget(m_clickCount, 1);
    auto* grid = new QGridLayout(box);
    grid->addWidget(brewButton, 0, 0);
    grid->addWidget(serveButton, 0, 1);
    grid->addWidget(grindButton, 1, 0);
    grid->addWidget(refillButton, 1, 1);
    grid->addWidget(milkButton, 2, 0);
    grid->addLayout(waiting, 2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    return box;
}

QWidget* ButtonsPage::makeRoasts()
{
    auto* box = named(new QGroupBox(tr("Roast"), this), "roastBox");
    auto* column = new QVBoxLayout(box);
    column->addWidget(named(new QRadioButton(tr("&Light"), box), "lightRadio"));
    auto* mediumRadio = named(new QRadioButton(tr("&Medium"), box), "mediumRadio");
    mediumRadio->setChecked(true);
    column->addWidget(mediumRadio);
    column->addWidget(named(new QRadioButton(tr("&Dark"), box), "darkRadio"));
    auto* italianRadio = named(new QRadioButton(tr("Italian (sold out)"), box), "italianRadio");
    italianRadio->setEnabled(false);
    column->addWidget(italianRadio);
    column->addStretch();
    return box;
}

QWidget* ButtonsPage::makeExtras()
{
    auto* box = new QGroupBox(tr("Extras"), this); // without an object name
    auto* column = new QVBoxLayout(box);
    column->addWidget(named(new QCheckBox(tr("Mil&k"), box), "milkCheck"));
    auto* sugarCheck = new QCheckBox(tr("Sugar"), box); // without an object name
    sugarCheck->setChecked(true);
    column->addWidget(sugarCheck);
    auto* foamCheck = named(new QCheckBox(tr("Foam (a bit is fine)"), box), "foamCheck");
    foamCheck->setTristate();
    foamCheck->setCheckState(Qt::PartiallyChecked);
    column->addWidget(foamCheck);
    auto* cupCheck = named(new QCheckBox(tr("Own cup (from May)"), box), "ownCupCheck");
    cupCheck->setEnabled(false);
    column->addWidget(cupCheck);
    column->addStretch();
    return box;
}

QWidget* ButtonsPage::makeDelivery()
{
    auto* box = named(new QGroupBox(tr("Deliver to the door"), this), "deliveryBox");
    box->setCheckable(true);
    box->setChecked(false);
    auto* column = new QVBoxLayout(box);
    column->addWidget(named(new QCheckBox(tr("Express"), box), "expressCheck"));
    column->addWidget(named(new QCheckBox(tr("Gift wrapping"), box), "giftCheck"));
    column->addWidget(named(new QPushButton(tr("Call a courier"), box), "courierButton"));
    column->addStretch();
    return box;
}

QWidget* ButtonsPage::makePad()
{
    auto* box = named(new QGroupBox(tr("Tasting"), this), "tastingBox");
    auto* column = new QVBoxLayout(box);
    column->addWidget(named(new TastingPad(m_journal, box), "tastingPad"));
    return box;
}

void ButtonsPage::brew()
{
    m_clickCount->setText(QString::number(++m_cups));
}

void ButtonsPage::serve()
{
    m_cups = 0;
    m_clickCount->setText(QString::number(m_cups));
}
