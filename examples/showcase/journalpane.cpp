#include "journalpane.h"

#include "journal.h"
#include "named.h"

#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

JournalPane::JournalPane(Journal& journal, QWidget* parent)
    : QWidget(parent)
    , m_count(0)
    , m_lastEvent(named(new QLabel(tr("Nothing yet"), this), "lastEvent"))
    , m_eventCount(named(new QLabel(QLatin1String("0"), this), "eventCount"))
    , m_lines(named(new QPlainTextEdit(this), "journal"))
{
    m_lastEvent->setTextFormat(Qt::PlainText);
    m_lastEvent->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // long lines must not widen the window
    QFont bold = font();
    bold.setBold(true);
    m_lastEvent->setFont(bold);
    m_lines->setReadOnly(true);
    m_lines->setMaximumBlockCount(2000);
    auto* clearButton = named(new QPushButton(tr("Clear"), this), "clearJournalButton");

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 4, 8, 8);
    grid->addWidget(new QLabel(tr("Last event:"), this), 0, 0);
    grid->addWidget(m_lastEvent, 0, 1);
    grid->addWidget(new QLabel(tr("Events:"), this), 0, 2);
    grid->addWidget(m_eventCount, 0, 3);
    grid->addWidget(clearButton, 0, 4);
    grid->addWidget(m_lines, 1, 0, 1, 5);
    grid->setColumnStretch(1, 1);

    journal.watch(this);
    connect(&journal, SIGNAL(recorded(QString)), this, SLOT(append(QString)));
    connect(clearButton, SIGNAL(clicked()), this, SLOT(clear()));
}

QSize JournalPane::sizeHint() const
{
    return QSize(600, 150);
}

void JournalPane::append(const QString& line)
{
    m_lines->appendPlainText(line);
    m_lastEvent->setText(line);
    m_eventCount->setText(QString::number(++m_count));
}

void JournalPane::clear()
{
    m_count = 0;
    m_lines->clear();
    m_lastEvent->clear();
    m_eventCount->setText(QLatin1String("0"));
}
