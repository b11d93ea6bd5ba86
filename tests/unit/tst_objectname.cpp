#include "identify/objectname.h"

#include "identify/syntheticname.h"

#include <QAction>
#include <QCheckBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

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
    void pushButtonsAreNamedByTheirText();
    void aPushButtonWithoutTextHasANulName();
    void childrenOfInputDialogsAreNamedByTheirClass();
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
    QCOMPARE(::syntheticName(text), name);
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
        QString name = ::syntheticName(text);
        QVERIFY2(isSyntheticName(text, name), qPrintable(text));
        name[number(int(name.size()))] = letters.at(number(int(letters.size())));
        QCOMPARE(isSyntheticName(text, name), ::syntheticName(text) == name);
        name.chop(1);
        QCOMPARE(isSyntheticName(text, name), ::syntheticName(text) == name);
        QVERIFY(!isSyntheticName(text, ::syntheticName(text) + QLatin1Char('x')));
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
        names << getName(object);
    names << QString() << QString::fromLatin1("_dialog_button") << QString::fromLatin1("_action_button")
          << QString::fromLatin1("__widget__") << QString::fromLatin1("QPushButton__widget__");
    for (const QObject* object : objects) {
        for (const QString& name : names)
            QCOMPARE(hasName(object, name), getName(object) == name);
    }
}

void tst_ObjectName::anObjectNameWins()
{
    QPushButton button(QLatin1String("&Cancel"));
    button.setObjectName(QLatin1String("cancel"));
    QCOMPARE(getName(&button), QString::fromLatin1("cancel"));

    QToolButton tool;
    tool.setObjectName(QLatin1String("open"));
    QAction action(&tool);
    action.setObjectName(QLatin1String("fileOpen"));
    tool.addAction(&action);
    QCOMPARE(getName(&tool), QString::fromLatin1("open"));
}

void tst_ObjectName::anEmptyObjectNameIsNone()
{
    QPushButton button(QLatin1String("&Cancel"));
    button.setObjectName(QLatin1String(""));
    QCOMPARE(getName(&button), QString::fromLatin1("Cancel_dialog_button"));
}

void tst_ObjectName::toolButtonsAreNamedByTheirOnlyAction()
{
    QToolButton button;
    QAction first(&button);
    first.setObjectName(QLatin1String("fileOpen"));
    button.addAction(&first);
    QCOMPARE(getName(&button), QString::fromLatin1("fileOpen_action_button"));
    QAction second(&button);
    second.setObjectName(QLatin1String("fileSave"));
    button.addAction(&second);
    QCOMPARE(getName(&button), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::aToolButtonWithoutANamedActionIsUnnamed()
{
    QToolButton button;
    QCOMPARE(getName(&button), QString::fromLatin1("unnamed"));
    QAction action(&button);
    button.addAction(&action);
    QCOMPARE(getName(&button), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::pushButtonsAreNamedByTheirText()
{
    QPushButton button(QLatin1String("Apply  to all"));
    QCOMPARE(getName(&button), QString::fromLatin1("ApplyToAll_dialog_button"));
}

void tst_ObjectName::aPushButtonWithoutTextHasANulName()
{
    const QString expected = QString(1, QChar(0)) + QLatin1String("_dialog_button");
    const char* const labels[] = {"", "&", " ", "& &"};
    for (const char* label : labels) {
        QPushButton button(QString::fromLatin1(label));
        QCOMPARE(getName(&button), expected);
    }
    QPushButton withoutText;
    QCOMPARE(getName(&withoutText), expected);
}

void tst_ObjectName::childrenOfInputDialogsAreNamedByTheirClass()
{
    QInputDialog dialog;
    QLineEdit edit(&dialog);
    QCOMPARE(getName(&edit), QString::fromLatin1("QLineEdit__widget__"));
    QWidget frame(&dialog);
    QLineEdit deeper(&frame);
    QCOMPARE(getName(&frame), QString::fromLatin1("QWidget__widget__"));
    QCOMPARE(getName(&deeper), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::aToolButtonInAnInputDialogFallsThrough()
{
    QInputDialog dialog;
    QToolButton button(&dialog);
    QCOMPARE(getName(&button), QString::fromLatin1("QToolButton__widget__"));

    QAction first(&button);
    first.setObjectName(QLatin1String("fileOpen"));
    QAction second(&button);
    second.setObjectName(QLatin1String("fileSave"));
    button.addAction(&first);
    button.addAction(&second);
    QCOMPARE(getName(&button), QString::fromLatin1("QToolButton__widget__"));
}

void tst_ObjectName::anyOtherObjectIsUnnamed()
{
    QObject object;
    QCOMPARE(getName(&object), QString::fromLatin1("unnamed"));
    QCheckBox box(QLatin1String("Text"));
    QCOMPARE(getName(&box), QString::fromLatin1("unnamed"));
}

void tst_ObjectName::isAComparesTheExactClass()
{
    QCheckBox box;
    QVERIFY(isA(&box, "QCheckBox"));
    QVERIFY(!isA(&box, "QAbstractButton"));
    QVERIFY(!isA(&box, "QCheckBo"));
    QVERIFY(!isA(&box, "QCheckBoxes"));
    QVERIFY(!isA(&box, ""));
}

QTEST_MAIN(tst_ObjectName)
#include "tst_objectname.moc"
