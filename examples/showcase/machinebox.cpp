#include "machinebox.h"

#include "journal.h"
#include "look.h"
#include "named.h"

#include <QAction>
#include <QCommandLinkButton>
#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QTimer>
#include <QToolButton>

MachineBox::MachineBox(Journal& journal, QWidget* parent)
    : QGroupBox(tr("Machine"), parent)
    , m_journal(journal)
    , m_sizeButton(named(new QToolButton(this), "sizeButton"))
    , m_roastProgress(named(new QProgressBar(this), "roastProgress"))
    , m_roastTimer(new QTimer(this))
{
    addSizes();
    auto* warmButton = named(new QToolButton(this), "warmButton");
    warmButton->setText(tr("Keep warm"));
    warmButton->setCheckable(true);
    auto* rinseButton = new QToolButton(this); // named after its only action
    rinseButton->setDefaultAction(named(new QAction(tr("Rinse"), rinseButton), "rinseAction"));
    auto* roastLink
        = named(new QCommandLinkButton(tr("Roast a new batch"), tr("Takes about two seconds"), this), "roastLink");
    roastLink->setIcon(Look::bean());
    m_roastProgress->setValue(0);

    auto* tools = new QHBoxLayout;
    tools->addWidget(m_sizeButton);
    tools->addWidget(warmButton);
    tools->addWidget(rinseButton);
    tools->addStretch();
    auto* column = new QVBoxLayout(this);
    column->addLayout(tools);
    column->addWidget(roastLink);
    column->addWidget(m_roastProgress);
    column->addStretch();

    connect(m_sizeButton->menu(), SIGNAL(triggered(QAction*)), SLOT(chooseSize(QAction*)));
    connect(roastLink, SIGNAL(clicked()), SLOT(startRoast()));
    connect(m_roastTimer, SIGNAL(timeout()), SLOT(continueRoast()));
}

void MachineBox::addSizes()
{
    m_sizeButton->setText(tr("Medium cup"));
    m_sizeButton->setPopupMode(QToolButton::MenuButtonPopup);
    auto* menu = named(new QMenu(m_sizeButton), "sizeMenu");
    named(menu->addAction(tr("Small cup")), "smallAction");
    named(menu->addAction(tr("Medium cup")), "mediumAction");
    named(menu->addAction(tr("Large cup")), "largeAction");
    m_sizeButton->setMenu(menu);
}

void MachineBox::chooseSize(QAction* size)
{
    m_sizeButton->setText(size->text());
}

void MachineBox::startRoast()
{
    m_roastProgress->setValue(0);
    m_roastTimer->start(100);
}

void MachineBox::continueRoast()
{
    m_roastProgress->setValue(m_roastProgress->value() + 5);
    if (m_roastProgress->value() < m_roastProgress->maximum())
        return;
    m_roastTimer->stop();
    m_journal.record("finished", m_roastProgress->objectName());
}
