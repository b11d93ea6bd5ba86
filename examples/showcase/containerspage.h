#pragma once

#include <QWidget>

class Journal;
class QLabel;

/// Everything that holds other widgets, and twins of one name that only their containers tell apart.
class ContainersPage : public QWidget
{
    Q_OBJECT
public:
    ContainersPage(Journal& journal, QWidget* parent);

private Q_SLOTS:
    void startRoaster();
    void discard();
    void showDay(int day);

private:
    QWidget* makeMenuCard();
    QWidget* makeRecipes();
    QWidget* makeShelf();
    QWidget* makeWeek();
    QWidget* makeRoaster(const QString& title, const char* name);

    Journal& m_journal;
    QLabel* m_dayLabel; // our child
};
