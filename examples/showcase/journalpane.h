#pragma once

#include <QWidget>

class Journal;
class QLabel;
class QPlainTextEdit;

/// Shows the journal's last line in large and all lines below it.
class JournalPane : public QWidget
{
    Q_OBJECT
public:
    JournalPane(Journal& journal, QWidget* parent);

    QSize sizeHint() const override;

private Q_SLOTS:
    void append(const QString& line);
    void clear();

private:
    int m_count;
    QLabel* m_lastEvent; // our children
    QLabel* m_eventCount;
    QPlainTextEdit* m_lines;
};
