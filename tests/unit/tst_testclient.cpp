#include "agent/testclient.h"

#include "agent/buildtag.h"
#include "unittests.h"
#include "waiting.h"

#include <QApplication>
#include <QMetaMethod>
#include <QTest>

class tst_TestClient : public QObject
{
    Q_OBJECT

public:
    explicit tst_TestClient(const TestClient* created)
        : beforeApplication(created)
    {
    }

private Q_SLOTS:
    void beforeAnyApplicationObjectThereIsNone();
    void theBuildTagIsTheOneThatServersKnow();
    void theSlotsHaveTheirPlacesInTheMetaObject();
    void itIsCreatedWithoutParentAndStartsConnecting();

private:
    const TestClient* const beforeApplication;
};

void tst_TestClient::beforeAnyApplicationObjectThereIsNone()
{
    QVERIFY(!beforeApplication);
}

void tst_TestClient::theBuildTagIsTheOneThatServersKnow()
{
    QCOMPARE(agent::composeBuildTag(), QString::fromLatin1("qt486_vs2015_x64"));
}

void tst_TestClient::theSlotsHaveTheirPlacesInTheMetaObject()
{
    const QMetaObject& meta = TestClient::staticMetaObject;
    QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("QTcpSocket"));
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 3);
    const char* const signatures[]
        = {"socketConnected()", "socketReadyRead()", "socketError(QAbstractSocket::SocketError)"};
    for (int index = 0; index < 3; ++index) {
        const QMetaMethod method = meta.method(meta.methodOffset() + index);
        QCOMPARE(meta.indexOfMethod(signatures[index]), meta.methodOffset() + index);
        QCOMPARE(int(method.methodType()), int(QMetaMethod::Slot));
        QCOMPARE(int(method.access()), int(QMetaMethod::Private));
    }
}

void tst_TestClient::itIsCreatedWithoutParentAndStartsConnecting()
{
    TestClient* client = createTestClient();
    QVERIFY(client);
    QVERIFY(!client->parent());
    QVERIFY(client->state() != QAbstractSocket::UnconnectedState);
    // Nobody listens here.
    QVERIFY(becomesTrue([&] { return client->state() == QAbstractSocket::UnconnectedState; }));
    QVERIFY(!client->isOpen());
    delete client;
}

namespace {

int runFromBeforeTheApplication(int argc, char** argv)
{
    const TestClient* const beforeApplication = createTestClient();
    const QApplication application(argc, argv);
    tst_TestClient test(beforeApplication);
    return QTest::qExec(&test, argc, argv);
}

} // namespace

UNIT_TESTS(tst_testclient, runFromBeforeTheApplication)

#include "tst_testclient.moc"
