#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>

// Standard input, told as it comes while the event loop runs: what the test writes there. Also has standard output
// leave line ends as they are. To be created once, and never deleted: Windows reads in a thread that nothing can stop.
class StandardInput : public QObject
{
    Q_OBJECT

public:
    StandardInput();

Q_SIGNALS:
    // Empty at its end.
    void arrived(const QByteArray& bytes);

private Q_SLOTS:
    void read();
};
