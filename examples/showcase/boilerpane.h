#pragma once

#include <QWidget>

/// The boiler's controls, shown in a dock.
class BoilerPane : public QWidget
{
    Q_OBJECT
public:
    explicit BoilerPane(QWidget* parent);

    QSize sizeHint() const override;
};
