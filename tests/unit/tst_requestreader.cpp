#include "agent/requestreader.h"
#include "unittests.h"

#include <QSignalSpy>
#include <QTest>

namespace {

// A socket as the reader sees it: bytes that arrive in pieces, and replies that somebody has yet to read.
class Device : public QIODevice
{
public:
    Device() { open(ReadWrite | Unbuffered); }

    void deliver(const QByteArray& bytes) { arrived += bytes; }
    void leaveUnread(qint64 bytes) { unread = bytes; }
    void readReplies(qint64 bytes)
    {
        unread -= bytes;
        Q_EMIT bytesWritten(bytes);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return arrived.size() - position + QIODevice::bytesAvailable(); }
    qint64 bytesToWrite() const override { return unread; }
    bool canReadLine() const override { return arrived.indexOf('\n', position) >= 0 || QIODevice::canReadLine(); }

protected:
    qint64 readData(char* data, qint64 maximum) override
    {
        const auto count = static_cast<int>(qMin<qint64>(maximum, arrived.size() - position));
        memcpy(data, arrived.constData() + position, static_cast<std::size_t>(count));
        position += count;
        return count;
    }
    qint64 writeData(const char*, qint64 maximum) override { return maximum; }

private:
    QByteArray arrived;
    int position = 0; // up to which it has been read
    qint64 unread = 0;
};

const QByteArray nothing("nothing was taken");

QByteArray taken(agent::RequestReader& reader)
{
    QByteArray request;
    return reader.take(request) ? request : nothing;
}

QByteArray bytes(int count)
{
    return QByteArray(count, 'x');
}

} // namespace

class tst_RequestReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreRequestsWithoutTheirEnd_data();
    void linesAreRequestsWithoutTheirEnd();
    void aRequestIsNotTakenBeforeItsEndHasArrived();
    void noMoreIsReadThanTheRequestThatIsTaken();
    void theLongestRequestIsTaken();
    void aLongerOneClosesTheDevice();
    void aRequestWithoutEndClosesTheDevice();
    void whatWasForgottenIsNoBeginningOfARequest();
    void fromAClosedDeviceNothingIsTaken();
    void whileRepliesAreUnreadNothingIsTaken();
    void thatItMayGoOnIsToldOnlyAfterItWasHeldBack();
};

void tst_RequestReader::linesAreRequestsWithoutTheirEnd_data()
{
    QTest::addColumn<QByteArray>("arriving");
    QTest::addColumn<QByteArray>("requests"); // each with a bar behind it
    const auto row = [](const char* name, const QByteArray& arriving, const QByteArray& requests) {
        QTest::newRow(name) << arriving << requests;
    };
    row("line feed", "1\n", "1|");
    row("carriage return and line feed", "1\r\n", "1|");
    row("carriage return alone", "1\r2\n", "1\r2|");
    row("two carriage returns", "1\r\r\n", "1\r|");
    row("empty ones", "\n\r\n\n", "|||");
    row("several", "1\n2,Main\n3\n", "1|2,Main|3|");
    row("NUL bytes", QByteArray("1\0\0002\n", 5), QByteArray("1\0\0002|", 5));
    row("no end", "1", "");
    row("nothing", "", "");
}

void tst_RequestReader::linesAreRequestsWithoutTheirEnd()
{
    QFETCH(QByteArray, arriving);
    QFETCH(QByteArray, requests);
    Device device;
    agent::RequestReader reader(device);
    device.deliver(arriving);
    QByteArray all;
    QByteArray request;
    while (reader.take(request))
        all += request + '|';
    QCOMPARE(all, requests);
}

void tst_RequestReader::aRequestIsNotTakenBeforeItsEndHasArrived()
{
    Device device;
    agent::RequestReader reader(device);
    for (const char* const piece : {"8,", "Ma", "in", "\r"}) {
        device.deliver(piece);
        QCOMPARE(taken(reader), nothing);
    }
    device.deliver("\n1");
    QCOMPARE(taken(reader), QByteArray("8,Main"));
    QCOMPARE(taken(reader), nothing);
    device.deliver("2\n");
    QCOMPARE(taken(reader), QByteArray("12"));
}

void tst_RequestReader::noMoreIsReadThanTheRequestThatIsTaken()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver("1\n2\n3");
    QCOMPARE(taken(reader), QByteArray("1"));
    QCOMPARE(device.bytesAvailable(), qint64(3));
}

void tst_RequestReader::theLongestRequestIsTaken()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver(bytes(agent::RequestReader::maximumRequestBytes - 1) + '\n');
    QCOMPARE(taken(reader).size(), agent::RequestReader::maximumRequestBytes - 1);
    QVERIFY(device.isOpen());
}

void tst_RequestReader::aLongerOneClosesTheDevice()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver(bytes(agent::RequestReader::maximumRequestBytes) + '\n');
    QCOMPARE(taken(reader), nothing);
    QVERIFY(!device.isOpen());
}

void tst_RequestReader::aRequestWithoutEndClosesTheDevice()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver(bytes(agent::RequestReader::maximumRequestBytes));
    QCOMPARE(taken(reader), nothing);
    QVERIFY(device.isOpen());
    device.deliver("x");
    QCOMPARE(taken(reader), nothing);
    QVERIFY(!device.isOpen());
}

void tst_RequestReader::whatWasForgottenIsNoBeginningOfARequest()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver("8,Ma");
    QCOMPARE(taken(reader), nothing);
    reader.clear();
    device.deliver("1\n");
    QCOMPARE(taken(reader), QByteArray("1"));
}

void tst_RequestReader::fromAClosedDeviceNothingIsTaken()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver("1\n");
    device.close();
    QCOMPARE(taken(reader), nothing);
}

void tst_RequestReader::whileRepliesAreUnreadNothingIsTaken()
{
    Device device;
    agent::RequestReader reader(device);
    device.deliver("1\n2\n");
    device.leaveUnread(agent::RequestReader::maximumUnreadReplyBytes);
    QCOMPARE(taken(reader), QByteArray("1"));
    device.leaveUnread(agent::RequestReader::maximumUnreadReplyBytes + 1);
    QCOMPARE(taken(reader), nothing);
    device.readReplies(1);
    QCOMPARE(taken(reader), QByteArray("2"));
}

void tst_RequestReader::thatItMayGoOnIsToldOnlyAfterItWasHeldBack()
{
    Device device;
    agent::RequestReader reader(device);
    QSignalSpy resumed(&reader, SIGNAL(resumable()));
    device.readReplies(0);
    QCOMPARE(resumed.count(), 0);
    device.leaveUnread(agent::RequestReader::maximumUnreadReplyBytes + 1);
    QCOMPARE(taken(reader), nothing);
    device.readReplies(1);
    QCOMPARE(resumed.count(), 1);
    QCOMPARE(taken(reader), nothing);
    device.readReplies(1);
    QCOMPARE(resumed.count(), 1);
}

UNIT_TESTS(tst_requestreader, unit::withoutApplication<tst_RequestReader>)

#include "tst_requestreader.moc"
