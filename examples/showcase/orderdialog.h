#pragma once

#include <QDialog>

class Journal;
class QLineEdit;
class QSpinBox;

/// A modal dialog, from which a further one opens.
class OrderDialog : public QDialog
{
    Q_OBJECT
public:
    OrderDialog(Journal& journal, QWidget* parent);

    /// "CUPS for CUSTOMER", with ", STREET" where there is a street.
    QString order() const;

private Q_SLOTS:
    void askAddress();

private:
    Journal& m_journal;
    QLineEdit* m_customer; // our children, as the following
    QSpinBox* m_cups;
    QLineEdit* m_street;
};
