#include "identify/objectname.h"

#include "identify/syntheticname.h"
#include "unittests.h"

#include <QAction>
#include <QCheckBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <random>

class tst_ObjectName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void syntheticName_data();
    void syntheticName();
    void namesAreComparedAsTheyAreMade();
    void hasNameAgreesWithGetName();
    void anObjectNameWins();
    void anEmptyObjectNameIsNone();
    void toolButtonsAreNamedByTheirOnlyAction();
    void aToolButtonWithoutANamedActionIsUnnamed();
    void aPushButtonWithoutTextHasANulName();
    void aToolButtonInAnInputDialogFallsThrough();
    void anyOtherObjectIsUnnamed();
    void isAComparesTheExactClass();
};

void tst_ObjectName::syntheticName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("mnemonic and punctuation") << QString::fromLatin1("&Save as...") << QString::fromLatin1("SaveAs...");
    QTest::newRow("mnemonic inside") << QString::fromLatin1("Save &As") << QString::fromLatin1("SaveAs");
    QTest::newRow("surrounding blanks") << QString::fromLatin1("  OK  ") << QString::fromLatin1("Ok");
    QTest::newRow("apostrophe") << QString::fromLatin1("Don't save") << QString::fromLatin1("Don'tSave");
    QTest::newRow("runs of blanks") << QString::fromLatin1("Apply  to\tall") << QString::fromLatin1("ApplyToAll");
    QTest::newRow("two ampersands") << QString::fromLatin1("Drag && drop") << QString::fromLatin1("DragDrop");
    QTest::newRow("upper case") << QString::fromLatin1("SAVE ALL") << QString::fromLatin1("SaveAll");
    QTest::newRow("digits") << QString::fromLatin1("2nd page") << QString::fromLatin1("2ndPage");
}

void tst_ObjectName::syntheticName()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QCOMPARE(identify::syntheticName(text), name);
}

void tst_ObjectName::namesAreComparedAsTheyAreMade()
{
    // The last four of the text are not ASCII.
    const QString letters = QString::fromUtf8("aB1&. \t\xc3\xa4\xc4\xb0\xc3\x9f\xc2\xa0") + QChar();
    std::mt19937 random(1);
    const auto number = [&random](int limit) { return int(random() % unsigned(limit)); };
    for (int i = 0; i < 2000; ++i) {
        QString text;
        for (int length = number(6); length > 0; --length)
            text += letters.at(number(i % 2 ? 7 : int(letters.size())));
        QString name = identify::syntheticName(text);
        QVERIFY2(identify::isSyntheticName(text, name), qPrintable(text));
        name[number(int(name.size()))] = letters.at(number(int(letters.size())));
        QCOMPARE(identify::isSyntheticName(text, name), identify::syntheticName(text) == name);
        name.chop(1);
        QCOMPARE(identify::isSyntheticName(text, name), identify::syntheticName(text) == name);
        QVERIFY(!identify::isSyntheticName(text, identify::syntheticName(text) + QLatin1Char('x')));
    }
}

void tst_ObjectName::hasNameAgreesWithGetName()
{
    QInputDialog dialog;
    QPushButton button(QString::fromLatin1("&Go on"), &dialog);
    QPushButton blank(QString::fromLatin1(" "));
    QToolButton tool(&dialog);
    QToolButton toolWithAction;
    QAction action(nullptr);
    action.setObjectName(QString::fromLatin1("open"));
    toolWithAction.addAction(&action);
    QLineEdit edit(&dialog);
    QWidget plain;
    QWidget called;
    called.setObjectName(QString::fromLatin1("called"));
    const QList<QObject*> objects = QList<QObject*>()
        << &button << &blank << &tool << &toolWithAction << &edit << &plain << &called;
    QStringList names;
    for (const QObject* object : objects)
        names << identify::getName(object);
    names << QString() << QString::fromLatin1("_dialog_button") << QString::fromLatin1("_action_button")
          << QString::fromLatin1("__widget__") << QString::fromLatin1("QPushButton__widget__");
    for (const QObject* object : objects) {
        for (const QString& name : names)
            QCOMPARE(identify::hasName(object, name), identify::getName(object) == name);
    }
}

void tst_ObjectName::anObjectNameWins()
{
    QPushButton button(QLatin1String("&Cancel"));
    button.setObjectName(QLatin1String("cancel"));
    QCOMPARE(identify::getName(&button), QString::fromLatin1("cancel"));

    QToolButton tool;
    tool.setObjectName(QLatin1String("open"));
    QAction action(&tool);
    action.setObjectName(QLatin1String("fileOpen"));
    tool.addAction(&action);
    QCOMPARE(identify::getName(&tool), QString::fromLatin1("open"));
}

void tst_ObjectName::anEmptyObjectNameIsNone()
{
    QPushButton button(QLatin1String("&Cancel"));
    button.setObjectName(QLatin1String(""));
    QCOMPARE(identify::getName(&button), QString::fromLatin1("Cancel_dialog_button"));
}

void tst_ObjectName::toolButtonsAreNamedByTheirOnlyAction()
{
    QToolButton button;
    QAction first(&button);
    first.setObjectName(QLatin1String("fileOpen"));
    button.addAction(&first);
    QCOMPARE(identify::getName(&button), QString::fromLatin1("fileOpen_action_button"));
    QAction second(&button);
    second.setObjectName(QLatin1String("fileSave"));
    button.addAction(&second);
    QCOMPARE(identify::getName(&button), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::aToolButtonWithoutANamedActionIsUnnamed()
{
    QToolButton button;
    QCOMPARE(identify::getName(&button), QString::fromLatin1("unnamed"));
    QAction action(&button);
    button.addAction(&action);
    QCOMPARE(identify::getName(&button), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::aPushButtonWithoutTextHasANulName()
{
    const QString expected = QString(1, QChar(0)) + QLatin1String("_dialog_button");
    const char* const labels[] = {"", "&", " ", "& &"};
    for (const char* label : labels) {
        QPushButton button(QString::fromLatin1(label));
        QCOMPARE(identify::getName(&button), expected);
    }
    QPushButton withoutText;
    QCOMPARE(identify::getName(&withoutText), expected);
}

void tst_ObjectName::aToolButtonInAnInputDialogFallsThrough()
{
    QInputDialog dialog;
    QToolButton button(&dialog);
    QCOMPARE(identify::getName(&button), QString::fromLatin1("QToolButton__widget__"));

    QAction first(&button);
    first.setObjectName(QLatin1String("fileOpen"));
    QAction second(&button);
    second.setObjectName(QLatin1String("fileSave"));
    button.addAction(&first);
    button.addAction(&second);
    QCOMPARE(identify::getName(&button), QString::fromLatin1("QToolButton__widget__"));
}

void tst_ObjectName::anyOtherObjectIsUnnamed()
{
    QObject object;
    QCOMPARE(identify::getName(&object), QString::fromLatin1("unnamed"));
    QCheckBox box(QLatin1String("Text"));
    QCOMPARE(identify::getName(&box), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::isAComparesTheExactClass()
{
    QCheckBox box;
    QVERIFY(identify::isA(&box, "QCheckBox"));
    QVERIFY(!identify::isA(&box, "QAbstractButton"));
    QVERIFY(!identify::isA(&box, "QCheckBo"));
    QVERIFY(!identify::isA(&box, "QCheckBoxes"));
    QVERIFY(!identify::isA(&box, ""));
}

UNIT_TESTS(tst_objectname, unit::withApplication<tst_ObjectName>)
#include "tst_objectname.moc"
