#include "dialogspage.h"

#include "journal.h"
#include "named.h"
#include "orderdialog.h"
#include "orderswindow.h"
#include "orderwindow.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

DialogsPage::DialogsPage(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_journal(journal)
    , m_order(named(new QLabel(this), "orderResult"))
    , m_blend(named(new QLabel(this), "blendResult"))
    , m_answer(named(new QLabel(this), "answerResult"))
    , m_file(named(new QLabel(this), "fileResult"))
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(24, 20, 24, 20);
    grid->setHorizontalSpacing(18);
    grid->setVerticalSpacing(14);
    addRow(
        grid, "newOrderButton", tr("New order..."), tr("A modal dialog, with a further one for the address"), m_order);
    addRow(grid, "nameBlendButton", tr("Name a blend..."), tr("An input dialog"), m_blend);
    addRow(grid, "emptyRoasterButton", tr("Empty the roaster..."), tr("A message box"), m_answer);
    addRow(grid, "priceListButton", tr("Price list..."), tr("A file dialog"), m_file);
    addRow(grid, "ordersButton", tr("Orders"), tr("A second window"), nullptr);
    addRow(grid, "order12Button", tr("Order 12"), tr("A third window, whose title begins as those of the others"),
        nullptr);
    addRow(grid, "aboutButton", tr("About"), tr("A message of one button"), nullptr);
    grid->setRowStretch(grid->rowCount(), 1);
    grid->setColumnStretch(2, 1);

    m_journal.watch(this);
    const struct
    {
        const char* buttonName;
        const char* slot;
    } rows[] = {{"newOrderButton", SLOT(newOrder())}, {"nameBlendButton", SLOT(nameBlend())},
        {"emptyRoasterButton", SLOT(emptyRoaster())}, {"priceListButton", SLOT(choosePriceList())},
        {"ordersButton", SLOT(showOrders())}, {"order12Button", SLOT(showOrder12())},
        {"aboutButton", SLOT(showAbout())}};
    for (const auto& row : rows)
        connect(findChild<QPushButton*>(QLatin1String(row.buttonName)), SIGNAL(clicked()), row.slot);
}

DialogsPage::~DialogsPage() = default;

void DialogsPage::addRow(
    QGridLayout* grid, const char* buttonName, const QString& text, const QString& advice, QLabel* result)
{
    const int row = grid->rowCount();
    grid->addWidget(named(new QPushButton(text, this), buttonName), row, 0);
    grid->addWidget(new QLabel(advice, this), row, 1);
    if (!result)
        return;
    result->setText(tr("(nothing yet)"));
    result->setTextFormat(Qt::PlainText);
    grid->addWidget(result, row, 2);
}

/// Shows \a dialog until it is answered; true where it was accepted.
bool DialogsPage::run(QDialog& dialog)
{
    m_journal.record("opened", dialog.objectName());
    return dialog.exec() == QDialog::Accepted;
}

void DialogsPage::newOrder()
{
    OrderDialog dialog(m_journal, window());
    named(&dialog, "orderDialog");
    if (!run(dialog)) {
        m_journal.record("rejected", dialog.objectName());
        return;
    }
    m_order->setText(dialog.order());
    m_journal.record("accepted", dialog.objectName(), dialog.order());
}

void DialogsPage::nameBlend()
{
    QInputDialog dialog(window());
    named(&dialog, "blendDialog");
    dialog.setWindowTitle(tr("Name a blend"));
    dialog.setLabelText(tr("The new blend is called:"));
    dialog.setTextValue(tr("Morning"));
    if (!run(dialog)) {
        m_journal.record("rejected", dialog.objectName());
        return;
    }
    m_blend->setText(dialog.textValue());
    m_journal.record("accepted", dialog.objectName(), dialog.textValue());
}

void DialogsPage::emptyRoaster()
{
    QMessageBox box(QMessageBox::Question, tr("Empty the roaster"), tr("Throw the batch in the roaster away?"),
        QMessageBox::Yes | QMessageBox::No, window());
    named(&box, "emptyBox");
    run(box);
    const bool yes = box.standardButton(box.clickedButton()) == QMessageBox::Yes;
    m_answer->setText(yes ? tr("yes") : tr("no"));
    m_journal.record("answered", box.objectName(), m_answer->text());
}

void DialogsPage::choosePriceList()
{
    QFileDialog dialog(window(), tr("Price list"));
    named(&dialog, "priceListDialog");
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::AnyFile);
    if (!run(dialog)) {
        m_journal.record("rejected", dialog.objectName());
        return;
    }
    m_file->setText(dialog.selectedFiles().value(0));
    m_journal.record("accepted", dialog.objectName(), m_file->text());
}

void DialogsPage::showOrders()
{
    if (!m_ordersWindow)
        m_ordersWindow.reset(new OrdersWindow(m_journal));
    m_journal.record("opened", m_ordersWindow->objectName());
    m_ordersWindow->show();
    m_ordersWindow->raise();
    m_ordersWindow->activateWindow();
}

void DialogsPage::showOrder12()
{
    auto* orderWindow = new OrderWindow(m_journal, 12, window());
    m_journal.record("opened", orderWindow->objectName());
    orderWindow->show();
}

void DialogsPage::showAbout()
{
    QMessageBox box(QMessageBox::Information, tr("About the roastery"),
        tr("A small shop to try test automation on.\nNo coffee was harmed."), QMessageBox::Ok, window());
    named(&box, "aboutBox");
    run(box);
    m_journal.record("closed", box.objectName());
}
