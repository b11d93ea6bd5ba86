#pragma once

#include <QDateTime>
#include <QModelIndex>
#include <QObject>

class Journal;

/// Writes a line into the journal for each signal it receives: what happened, to whom.
class Recorder : public QObject
{
    Q_OBJECT
public:
    Recorder(Journal& journal, QObject* parent);

public Q_SLOTS:
    void clicked();
    void toggled(bool on);
    void checkStateChanged(int state);
    void triggered();
    void textChanged();
    void returnPressed();
    void choiceChanged();
    void numberChanged(int value);
    void numberChanged(double value);
    void dateTimeChanged(const QDateTime& value);
    void pageChanged(int index);
    void itemClicked(const QModelIndex& index);
    void itemDoubleClicked(const QModelIndex& index);
    void itemActivated(const QModelIndex& index);
    void itemExpanded(const QModelIndex& index);
    void itemCollapsed(const QModelIndex& index);
    void itemChanged(const QModelIndex& index);
    void selectionChanged();
    void headerClicked(int section);
    void dockFloated(bool floating);
    void trayActivated();

private:
    void recordItem(const char* event, const QModelIndex& index);

    Journal& m_journal;
};
