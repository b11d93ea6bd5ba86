#include "entrypage.h"

#include "journal.h"
#include "named.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QStringList>
#include <QTextEdit>
#include <QTimeEdit>

EntryPage::EntryPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_customer(nullptr)
    , m_cups(nullptr)
    , m_summary(named(new QLabel(this), "orderSummary"))
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 14, 14, 14);
    grid->setSpacing(12);
    grid->addWidget(makeCustomer(), 0, 0);
    grid->addWidget(makeOrder(), 0, 1);
    grid->addWidget(makeTemperature(), 0, 2);
    grid->addWidget(makeNote(), 1, 0);
    grid->addWidget(makeTimes(), 1, 1, 1, 2);
    grid->addWidget(m_summary, 2, 0, 1, 3);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
    summarize();

    journal.watch(this);
    connect(m_customer, SIGNAL(textChanged(QString)), SLOT(summarize()));
    connect(m_cups, SIGNAL(valueChanged(int)), SLOT(summarize()));
}

QWidget* EntryPage::makeCustomer()
{
    auto* box = named(new QGroupBox(tr("Customer"), this), "customerBox");
    m_customer = named(new QLineEdit(box), "customerEdit");
    m_customer->setPlaceholderText(tr("Name on the cup"));
    auto* bagsEdit = named(new QLineEdit(QLatin1String("2"), box), "bagsEdit");
    bagsEdit->setValidator(new QIntValidator(1, 99, bagsEdit));
    auto* postcodeEdit = named(new QLineEdit(box), "postcodeEdit");
    postcodeEdit->setInputMask(QLatin1String("00-000;_"));
    auto* batchEdit = named(new QLineEdit(QLatin1String("B-2024-017"), box), "batchEdit");
    batchEdit->setReadOnly(true);
    auto* passwordEdit = named(new QLineEdit(box), "passwordEdit");
    passwordEdit->setEchoMode(QLineEdit::Password);

    auto* form = new QFormLayout(box);
    form->addRow(tr("&Name:"), m_customer);
    form->addRow(tr("Bags (1-99):"), bagsEdit);
    form->addRow(tr("Postcode:"), postcodeEdit);
    form->addRow(tr("Batch:"), batchEdit);
    form->addRow(tr("Member PIN:"), passwordEdit);
    form->addRow(tr("Voucher:"), new QLineEdit(box)); // without an object name
    return box;
}

QWidget* EntryPage::makeOrder()
{
    auto* box = named(new QGroupBox(tr("Order"), this), "orderBox");
    auto* beanCombo = named(new QComboBox(box), "beanCombo");
    beanCombo->addItems(tr("Arabica,Robusta,Liberica,Excelsa").split(QLatin1Char(',')));
    auto* originCombo = named(new QComboBox(box), "originCombo");
    originCombo->setEditable(true);
    originCombo->addItems(tr("Brazil,Colombia,Ethiopia,Kenya").split(QLatin1Char(',')));
    m_cups = named(new QSpinBox(box), "cupSpin");
    m_cups->setRange(0, 40);
    auto* weightSpin = named(new QDoubleSpinBox(box), "weightSpin");
    weightSpin->setRange(0, 50);
    weightSpin->setSingleStep(0.25);
    weightSpin->setValue(1.5);
    weightSpin->setSuffix(tr(" kg"));
    auto* strengthSlider = named(new QSlider(Qt::Horizontal, box), "strengthSlider");
    strengthSlider->setRange(0, 10);
    strengthSlider->setValue(5);
    strengthSlider->setPageStep(2);
    strengthSlider->setTickPosition(QSlider::TicksBelow);

    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Bean:"), beanCombo);
    form->addRow(tr("Origin:"), originCombo);
    form->addRow(tr("Cups:"), m_cups);
    form->addRow(tr("Weight:"), weightSpin);
    form->addRow(tr("Strength:"), strengthSlider);
    return box;
}

QWidget* EntryPage::makeTemperature()
{
    auto* box = named(new QGroupBox(tr("Heat"), this), "heatBox");
    auto* slider = named(new QSlider(Qt::Vertical, box), "heatSlider");
    slider->setRange(150, 250);
    slider->setValue(200);
    slider->setPageStep(10);
    slider->setTickPosition(QSlider::TicksBothSides);
    slider->setTickInterval(25);
    auto* value = named(new QLabel(QLatin1String("200"), box), "heatLabel");
    auto* column = new QVBoxLayout(box);
    column->addWidget(slider, 1, Qt::AlignHCenter);
    column->addWidget(value, 0, Qt::AlignHCenter);
    connect(slider, SIGNAL(valueChanged(int)), value, SLOT(setNum(int)));
    return box;
}

QWidget* EntryPage::makeNote()
{
    auto* box = named(new QGroupBox(tr("Note for the barista"), this), "noteBox");
    auto* note = named(new QTextEdit(box), "noteEdit");
    note->setAcceptRichText(false);
    note->setTabChangesFocus(true);
    auto* column = new QVBoxLayout(box);
    column->addWidget(note);
    return box;
}

QWidget* EntryPage::makeTimes()
{
    auto* box = named(new QGroupBox(tr("Times"), this), "timesBox");
    const QDate day(2024, 3, 15);
    auto* pickupEdit = named(new QDateTimeEdit(QDateTime(day, QTime(9, 30)), box), "pickupEdit");
    pickupEdit->setDisplayFormat(QLatin1String("yyyy-MM-dd HH:mm"));
    auto* roastedEdit = named(new QDateEdit(day.addDays(-3), box), "roastedEdit");
    roastedEdit->setDisplayFormat(QLatin1String("yyyy-MM-dd"));
    roastedEdit->setCalendarPopup(true);
    auto* openEdit = named(new QTimeEdit(QTime(7, 0), box), "openEdit");
    openEdit->setDisplayFormat(QLatin1String("HH:mm"));
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Pick-up:"), pickupEdit);
    form->addRow(tr("Roasted on:"), roastedEdit);
    form->addRow(tr("Opens at:"), openEdit);
    return box;
}

void EntryPage::summarize()
{
    const QString customer = m_customer->text().isEmpty() ? tr("nobody yet") : m_customer->text();
    m_summary->setText(tr("Order for %1: %2 cups").arg(customer, QString::number(m_cups->value())));
}
