#pragma once

#include <QWidget>

class Journal;
class QListWidget;
class QPoint;

/// Lists and trees, with models of their own and with items.
class ListsPage : public QWidget
{
    Q_OBJECT
public:
    ListsPage(Journal& journal, QWidget* parent);

private Q_SLOTS:
    void showExtrasMenu(const QPoint& position);

private:
    QWidget* makeExtras();
    QWidget* makeOrigins();
    QWidget* makeBlends();
    QWidget* makeRegions();
    QWidget* titled(const QString& title, QWidget* view);

    Journal& m_journal;
    QListWidget* m_extras; // our child
};
