#pragma once

#include <QFile>
#include <QObject>

class Recorder;

/// A record of events in the application, one short line each, for people and for tests to read.
class Journal : public QObject
{
    Q_OBJECT
public:
    explicit Journal(QObject* parent = nullptr);

    /// Appends every later line to the file \a name as well; false, with a reason in errorString(), where it
    /// cannot.
    bool openFile(const QString& name);
    QString errorString() const { return m_file.errorString(); }

    /// Lines are kept from now on, and not before: so the application's own start is none of them.
    void start() { m_started = true; }

    /// Records the line "EVENT: SUBJECT DETAIL".
    void record(const char* event, const QString& subject, const QString& detail = QString());

    /// Records from now on what the user does with \a root and everything below it.
    void watch(QObject* root);
    void stopWatching();

Q_SIGNALS:
    void recorded(const QString& line);

private:
    bool m_started;
    QFile m_file;
    Recorder* m_recorder; // our child
};
