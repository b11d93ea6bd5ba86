#pragma once

#include <QWidget>

class Journal;

/// Tables, over a model of their own and with items, and a view in columns.
class TablesPage : public QWidget
{
    Q_OBJECT
public:
    TablesPage(Journal& journal, QWidget* parent);

private:
    QWidget* makeBeans();
    QWidget* makePrices();
    QWidget* makeColumns();
};
