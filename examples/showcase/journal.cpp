#include "journal.h"

#include "recorder.h"
#include "watcher.h"

Journal::Journal(QObject* parent)
    : QObject(parent)
    , m_started(false)
    , m_recorder(new Recorder(*this, this))
{
}

bool Journal::openFile(const QString& name)
{
    m_file.setFileName(name);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

void Journal::record(const char* event, const QString& subject, const QString& detail)
{
    if (!m_started)
        return;
    QString line = QLatin1String(event) + QLatin1String(": ") + subject;
    if (!detail.isEmpty())
        line += QLatin1Char(' ') + detail;
    if (m_file.isOpen()) {
        m_file.write(line.toUtf8() + '\n');
        m_file.flush(); // a test reads along
    }
    Q_EMIT recorded(line);
}

void Journal::watch(QObject* root)
{
    if (m_recorder)
        watchAll(root, *m_recorder);
}

void Journal::stopWatching()
{
    delete m_recorder;
    m_recorder = nullptr;
}
