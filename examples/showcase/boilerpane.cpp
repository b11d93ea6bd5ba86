#include "boilerpane.h"

#include "named.h"

#include <QCheckBox>
#include <QDial>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

BoilerPane::BoilerPane(QWidget* parent)
    : QWidget(parent)
{
    auto* dial = named(new QDial(this), "pressureDial");
    dial->setRange(0, 15);
    dial->setNotchesVisible(true);
    auto* pressure = named(new QLabel(this), "pressureLabel");
    connect(dial, SIGNAL(valueChanged(int)), pressure, SLOT(setNum(int)));
    dial->setValue(9);
    auto* waterLevel = named(new QProgressBar(this), "waterLevel");
    waterLevel->setValue(70);

    auto* form = new QFormLayout;
    form->addRow(tr("Pressure (bar):"), pressure);
    form->addRow(tr("Water:"), waterLevel);
    auto* column = new QVBoxLayout(this);
    column->addWidget(dial);
    column->addLayout(form);
    column->addWidget(named(new QCheckBox(tr("Pre-infusion"), this), "infusionCheck"));
    column->addWidget(named(new QPushButton(tr("Let off steam"), this), "steamButton"));
    column->addStretch();
}

QSize BoilerPane::sizeHint() const
{
    return QSize(210, 320);
}
