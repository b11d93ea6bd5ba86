#pragma once

#include <QWidget>

class Journal;
class QLabel;
class QLineEdit;
class QSlider;
class QSpinBox;

/// Everything that takes a text, a number, a choice or a date.
class EntryPage : public QWidget
{
    Q_OBJECT
public:
    EntryPage(Journal& journal, QWidget* parent);

private Q_SLOTS:
    void summarize();

private:
    QWidget* makeCustomer();
    QWidget* makeOrder();
    QWidget* makeTimes();
    QWidget* makeTemperature();
    QWidget* makeNote();

    QLineEdit* m_customer; // our children, as the following
    QSpinBox* m_cups;
    QLabel* m_summary;
};
