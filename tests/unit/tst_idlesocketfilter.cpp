// Notifiers of sockets are told of input that is there, and of no other.

#include "compat/idlesocketfilter.h"
#include "unittests.h"
#include "waiting.h"

#include <QTest>

#include <QtCore/QSocketNotifier>

#include <sys/ioctl.h>
#include <unistd.h>

// A pipe that is read when its notifier says that there is something to read.
class Pipe : public QObject
{
    Q_OBJECT

public:
    Pipe()
    {
        if (pipe(ends) == 0) {
            notifier.reset(new QSocketNotifier(ends[0], QSocketNotifier::Read));
            connect(notifier.data(), SIGNAL(activated(int)), SLOT(read()));
        }
    }

    ~Pipe() override
    {
        notifier.reset();
        ::close(ends[0]);
        closeSource();
    }

    void write() { QCOMPARE(int(::write(ends[1], "x", 1)), 1); }

    void closeSource()
    {
        ::close(ends[1]);
        ends[1] = -1;
    }

    int socket() const { return ends[0]; }

    // Whether each reading handles all events, as a command does.
    bool handlesEvents = false;
    // How many bytes each reading found.
    QList<int> bytes;

private Q_SLOTS:
    void read()
    {
        int count = 0;
        ioctl(ends[0], FIONREAD, &count);
        bytes << count;
        char byte = 0;
        if (count > 0)
            QCOMPARE(int(::read(ends[0], &byte, 1)), 1);
        if (handlesEvents)
            QCoreApplication::processEvents();
    }

private:
    int ends[2] = {-1, -1};
    QScopedPointer<QSocketNotifier> notifier;
};

class tst_IdleSocketFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inputThatAnInnerLoopHasHandledIsNotToldAgain();
    void everyInputIsTold();
    void theEndOfInputIsTold();
    void otherEventsPass();
};

void tst_IdleSocketFilter::inputThatAnInnerLoopHasHandledIsNotToldAgain()
{
    compat::IdleSocketFilter filter;
    qApp->installEventFilter(&filter);
    Pipe first;
    Pipe second;
    first.handlesEvents = true;
    first.write();
    second.write();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    QCOMPARE(first.bytes, QList<int>() << 1);
    QCOMPARE(second.bytes, QList<int>() << 1);
}

void tst_IdleSocketFilter::everyInputIsTold()
{
    compat::IdleSocketFilter filter;
    qApp->installEventFilter(&filter);
    Pipe pipe;
    for (int i = 1; i <= 3; ++i) {
        pipe.write();
        QVERIFY(becomesTrue([&] { return pipe.bytes.size() == i; }));
    }
    pipe.write();
    pipe.write();
    QVERIFY(becomesTrue([&] { return pipe.bytes == (QList<int>() << 1 << 1 << 1 << 2 << 1); }));
}

void tst_IdleSocketFilter::theEndOfInputIsTold()
{
    compat::IdleSocketFilter filter;
    qApp->installEventFilter(&filter);
    Pipe pipe;
    pipe.closeSource();
    QVERIFY(becomesTrue([&] { return !pipe.bytes.isEmpty(); }));
    QCOMPARE(pipe.bytes.first(), 0);
}

void tst_IdleSocketFilter::otherEventsPass()
{
    compat::IdleSocketFilter filter;
    Pipe pipe;
    QSocketNotifier writing(pipe.socket(), QSocketNotifier::Write);
    writing.setEnabled(false);
    QEvent told(QEvent::SockAct);
    QVERIFY(!filter.eventFilter(&writing, &told));
    QVERIFY(!filter.eventFilter(this, &told));
    QSocketNotifier reading(pipe.socket(), QSocketNotifier::Read);
    QVERIFY(filter.eventFilter(&reading, &told));
    QEvent other(QEvent::Timer);
    QVERIFY(!filter.eventFilter(&reading, &other));
}

UNIT_TESTS(tst_idlesocketfilter, unit::withApplication<tst_IdleSocketFilter>)
#include "tst_idlesocketfilter.moc"
