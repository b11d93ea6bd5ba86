// The words of a mouse command of item views, and the order in which they are looked at.

#include "errorof.h"
#include "proxies/views/itemmousecommand.h"
#include "proxy/sterror.h"
#include "unittests.h"

#include <QTest>

class TestItemMouseCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knownWordsMakeACommand_data();
    void knownWordsMakeACommand();
    void otherTextsAreRefused_data();
    void otherTextsAreRefused();
};

void TestItemMouseCommand::knownWordsMakeACommand_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("modifiers");
    const auto row = [](const char* text, proxy::MouseCommandType type, Qt::MouseButton button, int modifiers) {
        QTest::newRow(text) << QString::fromLatin1(text) << int(type) << int(button) << modifiers;
    };
    row("MousePress:LeftButton:::", proxy::MouseCommandType::Press, Qt::LeftButton, 0);
    row("MouseRelease:RightButton:::", proxy::MouseCommandType::Release, Qt::RightButton, 0);
    row("MouseClick:LeftButton:0.5:0.5:ShiftModifier", proxy::MouseCommandType::Click, Qt::LeftButton, 0x02000000);
    row("MouseClick:LeftButton:x:y:ControlModifier", proxy::MouseCommandType::Click, Qt::LeftButton, 0x04000000);
    row("MouseDoubleClick:RightButton:9::AltModifier", proxy::MouseCommandType::DoubleClick, Qt::RightButton,
        0x08000000);
}

void TestItemMouseCommand::knownWordsMakeACommand()
{
    QFETCH(QString, text);
    const views::ItemMouseCommand command = views::itemMouseCommand(text);
    QTEST(int(command.type), "type");
    QTEST(int(command.button), "button");
    QTEST(int(command.modifiers), "modifiers");
}

void TestItemMouseCommand::otherTextsAreRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* text, const char* message) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(message);
    };
    row("", "Invalid string value");
    row("x:y::z", "Invalid string value");
    row("x:y:::z:", "Invalid string value");
    row("x:y:::z", "Mouse button not supported");
    row("x:NoButton:::z", "Mouse button not supported");
    row("x:LeftButton:::z", "Mouse modifier not supported");
    row("x:LeftButton:::NoModifier", "Mouse modifier not supported");
    row("x:LeftButton:::", "Invalid mouse command");
    row("mousepress:LeftButton:::", "Invalid mouse command");
    row("MouseMove:LeftButton:::", "Invalid mouse command");
}

void TestItemMouseCommand::otherTextsAreRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QCOMPARE(errorOf([&] { views::itemMouseCommand(text); }), message);
}

UNIT_TESTS(tst_itemmousecommand, unit::withApplication<TestItemMouseCommand>)
#include "tst_itemmousecommand.moc"
