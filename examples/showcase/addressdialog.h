#pragma once

#include <QDialog>

class Journal;
class QLineEdit;

/// The further dialog of a dialog.
class AddressDialog : public QDialog
{
    Q_OBJECT
public:
    AddressDialog(Journal& journal, QWidget* parent);

    QString street() const;

private:
    QLineEdit* m_street; // our child
};
