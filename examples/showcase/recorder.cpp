#include "recorder.h"

#include "describe.h"
#include "journal.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QTabWidget>
#include <QToolBox>
#include <QToolButton>

Recorder::Recorder(Journal& journal, QObject* parent)
    : QObject(parent)
    , m_journal(journal)
{
}

void Recorder::clicked()
{
    const auto* toolButton = qobject_cast<QToolButton*>(sender());
    const auto* button = qobject_cast<QAbstractButton*>(sender());
    // A checkable button tells its new state, and the button of an action leaves it to the action.
    if (button && !button->isCheckable() && !(toolButton && toolButton->defaultAction()))
        m_journal.record("clicked", nameOf(button));
}

void Recorder::toggled(bool on)
{
    const auto* checkBox = qobject_cast<QCheckBox*>(sender());
    const auto* toolButton = qobject_cast<QToolButton*>(sender());
    if (!(checkBox && checkBox->isTristate()) && !(toolButton && toolButton->defaultAction()))
        m_journal.record("toggled", nameOf(sender()), stateWord(on ? Qt::Checked : Qt::Unchecked));
}

void Recorder::checkStateChanged(int state)
{
    const auto* checkBox = qobject_cast<QCheckBox*>(sender());
    if (checkBox && checkBox->isTristate())
        m_journal.record("toggled", nameOf(checkBox), stateWord(state));
}

void Recorder::triggered()
{
    const auto* action = qobject_cast<QAction*>(sender());
    if (action && !action->isCheckable())
        m_journal.record("triggered", nameOf(action));
}

void Recorder::textChanged()
{
    m_journal.record("text", nameOf(sender()), textOf(sender()));
}

void Recorder::returnPressed()
{
    m_journal.record("entered", nameOf(sender()), textOf(sender()));
}

void Recorder::choiceChanged()
{
    if (const auto* comboBox = qobject_cast<QComboBox*>(sender()))
        m_journal.record("chosen", nameOf(comboBox), comboBox->currentText());
}

void Recorder::numberChanged(int value)
{
    m_journal.record("value", nameOf(sender()), QString::number(value));
}

void Recorder::numberChanged(double value)
{
    m_journal.record("value", nameOf(sender()), QString::number(value, 'f', 2));
}

void Recorder::dateTimeChanged(const QDateTime&)
{
    if (const auto* edit = qobject_cast<QDateTimeEdit*>(sender()))
        m_journal.record("value", nameOf(edit), edit->text());
}

void Recorder::pageChanged(int index)
{
    QString page;
    if (const auto* tabs = qobject_cast<QTabWidget*>(sender()))
        page = tabs->tabText(index);
    else if (const auto* bar = qobject_cast<QTabBar*>(sender()))
        page = bar->tabText(index);
    else if (const auto* box = qobject_cast<QToolBox*>(sender()))
        page = box->itemText(index);
    m_journal.record("page", nameOf(sender()), page.remove(QLatin1Char('&')));
}

void Recorder::recordItem(const char* event, const QModelIndex& index)
{
    m_journal.record(event, nameOf(sender()), describe(sender(), index));
}

void Recorder::itemClicked(const QModelIndex& index)
{
    recordItem("clicked", index);
}

void Recorder::itemDoubleClicked(const QModelIndex& index)
{
    recordItem("double-clicked", index);
}

void Recorder::itemActivated(const QModelIndex& index)
{
    recordItem("activated", index);
}

void Recorder::itemExpanded(const QModelIndex& index)
{
    recordItem("expanded", index);
}

void Recorder::itemCollapsed(const QModelIndex& index)
{
    recordItem("collapsed", index);
}

void Recorder::itemChanged(const QModelIndex& index)
{
    const QObject* view = sender()->parent(); // every model here belongs to its view
    const QVariant state = index.data(Qt::CheckStateRole);
    const QString word = state.isValid() ? QLatin1Char(' ') + stateWord(state.toInt()) : QString();
    m_journal.record("changed", nameOf(view), describe(view, index) + word);
}

void Recorder::selectionChanged()
{
    if (const auto* view = qobject_cast<QAbstractItemView*>(sender()->parent()))
        m_journal.record("selected", nameOf(view), describeSelection(view));
}

void Recorder::headerClicked(int section)
{
    const auto* header = qobject_cast<QHeaderView*>(sender());
    const QVariant text = header->model()->headerData(section, header->orientation());
    m_journal.record("header", nameOf(header->parent()), text.toString());
}

void Recorder::dockFloated(bool floating)
{
    m_journal.record(floating ? "floating" : "docked", nameOf(sender()));
}

void Recorder::trayActivated()
{
    m_journal.record("activated", nameOf(sender()));
}
