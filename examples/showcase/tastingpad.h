#pragma once

#include <QWidget>

class Journal;

/// A cup to try the mouse and the keyboard on: tells every press, release, double-click, drag and key.
class TastingPad : public QWidget
{
    Q_OBJECT
public:
    TastingPad(Journal& journal, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void record(const char* what, const QMouseEvent& event);

    Journal& m_journal;
    QPoint m_spot;
    QPoint m_pressedAt;
};
