#include "errorof.h"
#include "latin1.h"
#include "proxy/stwidgetproxy.h"

#include "compat/widgets.h"
#include "unittests.h"
#include "waiting.h"

#include <QPushButton>
#include <QTest>

namespace {

// Opens what only subclasses call, and adds pseudo-properties.
class Proxy : public STWidgetProxy
{
public:
    using STWidgetProxy::rangeError;
    using STWidgetProxy::stripMnemonic;
    using STWidgetProxy::syncEvents;
    using STWidgetProxy::typeError;

    QStringList pseudoPropertyNames() override
    {
        return QStringList() << QLatin1String("computed") << QLatin1String("className") << QLatin1String("none");
    }

    QVariant pseudoProperty(const char* name, const QVariant& argument) override
    {
        return qstrcmp(name, "none") == 0 ? QVariant() : QVariant(QLatin1String("pseudo ") + argument.toString());
    }
};

// A window that stays where it is put: no window manager looks after it.
struct FreeWindow
{
    FreeWindow(const QRect& geometry, const QRect& childGeometry)
        : window(nullptr, Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint)
        , child(&window)
    {
        window.setGeometry(geometry);
        child.setGeometry(childGeometry);
        window.show();
    }

    QWidget window;
    QWidget child;
};

const char dead[] = "Internal error, proxy without widget";

} // namespace

class tst_STWidgetProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUnboundProxyRefusesEverything();
    void aProxyWhoseWidgetDiedIsUnbound();
    void theCheckedClassMustBeABaseClass();
    void builtInNamesWinOverPseudoProperties();
    void pseudoPropertiesTakeTheArgument();
    void anInvalidPseudoPropertyIsUnknown();
    void propertiesAreWritten();
    void unknownPropertiesCannotBeWritten();
    void aTypeErrorNamesTheWidgetAndTheTypes();
    void aRangeErrorNamesTheWidgetAndTheRange();
    void aWidgetOffTheScreenTakesItsWindowToTheCorner();
    void aWidgetFarInsideAHugeWindowComesToTheCornerItself();
    void aClickStopsTheProcessingOfEventsUntilTheNextOperation();
    void onlyTheFirstMnemonicIsStripped_data();
    void onlyTheFirstMnemonicIsStripped();
};

void tst_STWidgetProxy::anUnboundProxyRefusesEverything()
{
    Proxy proxy;
    QCOMPARE(errorOf([&] { proxy.checkedWidget(nullptr); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.prepareWidget(); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.mouseAction(latin1("::::")); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.property("propertyNames", QVariant()); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.property("globalRect", QVariant()); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.property("windowTitle", QVariant()); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.setProperty("windowTitle", latin1("x")); }), latin1(dead));
    QCOMPARE(errorOf([&] { proxy.activate(QVariant(), QVariant()); }),
        latin1("\"activate\" is not implemented for widget of class \"unknown\""));
    QCOMPARE(errorOf([&] { proxy.enter(QVariant()); }),
        latin1("\"enter\" is not implemented for widget of class \"unknown\""));
    QCOMPARE(proxy.property("silkClassName", QVariant()).toString(), QString());
}

void tst_STWidgetProxy::aProxyWhoseWidgetDiedIsUnbound()
{
    Proxy proxy;
    auto* widget = new QWidget;
    proxy.bind(widget, "QWidget");
    QVERIFY(proxy.checkedWidget(nullptr) == widget);
    delete widget;
    QCOMPARE(errorOf([&] { proxy.checkedWidget(nullptr); }), latin1(dead));
}

void tst_STWidgetProxy::theCheckedClassMustBeABaseClass()
{
    Proxy proxy;
    QPushButton button;
    proxy.bind(&button, "QPushButton");
    QVERIFY(proxy.checkedWidget("QAbstractButton") == &button);
    QCOMPARE(errorOf([&] { proxy.checkedWidget("QSlider"); }),
        latin1("Internal error, proxy for class \"QSlider\", connected to widget of class \"QPushButton\"."));
}

void tst_STWidgetProxy::builtInNamesWinOverPseudoProperties()
{
    Proxy proxy;
    QWidget widget;
    proxy.bind(&widget, "Served");
    QCOMPARE(proxy.property("className", QVariant()).toString(), latin1("QWidget"));
    QCOMPARE(proxy.property("silkClassName", QVariant()).toString(), latin1("Served"));
    QCOMPARE(proxy.property("pseudoPropertyNames", QVariant()).toStringList(),
        QStringList() << latin1("propertyNames") << latin1("pseudoPropertyNames") << latin1("className")
                      << latin1("silkClassName") << latin1("globalRect") << latin1("computed") << latin1("className")
                      << latin1("none"));
}

void tst_STWidgetProxy::pseudoPropertiesTakeTheArgument()
{
    Proxy proxy;
    QWidget widget;
    proxy.bind(&widget, "QWidget");
    QCOMPARE(proxy.property("computed", latin1("argument")).toString(), latin1("pseudo argument"));
}

void tst_STWidgetProxy::anInvalidPseudoPropertyIsUnknown()
{
    Proxy proxy;
    QWidget widget;
    proxy.bind(&widget, "QWidget");
    QCOMPARE(errorOf([&] { proxy.property("none", QVariant()); }), latin1("Unknown property \"none\"."));
    QCOMPARE(errorOf([&] { proxy.property("Computed", QVariant()); }), latin1("Unknown property \"Computed\"."));
}

void tst_STWidgetProxy::propertiesAreWritten()
{
    Proxy proxy;
    QWidget widget;
    proxy.bind(&widget, "QWidget");
    proxy.setProperty("windowTitle", latin1("Title"));
    QCOMPARE(widget.windowTitle(), latin1("Title"));
}

void tst_STWidgetProxy::unknownPropertiesCannotBeWritten()
{
    Proxy proxy;
    QWidget widget;
    proxy.bind(&widget, "QWidget");
    QCOMPARE(errorOf([&] { proxy.setProperty("computed", 1); }), latin1("Can't set property \"computed\""));
}

void tst_STWidgetProxy::aTypeErrorNamesTheWidgetAndTheTypes()
{
    Proxy proxy;
    QWidget widget;
    widget.setObjectName(latin1("%2 name"));
    proxy.bind(&widget, "QWidget");
    QCOMPARE(errorOf([&] { proxy.typeError("string, integer"); }),
        latin1("Type error: object \"%2 name\" of class \"QWidget\" accepts string, integer."));
    QCOMPARE(errorOf([&] { proxy.typeError(nullptr); }),
        latin1("Type error: object \"%2 name\" of class \"QWidget\" accepts no parameter."));
    widget.setObjectName(QString(3000, QLatin1Char('x')));
    QCOMPARE(int(errorOf([&] { proxy.typeError("none"); }).size()), 2047);
}

void tst_STWidgetProxy::aRangeErrorNamesTheWidgetAndTheRange()
{
    Proxy proxy;
    QWidget widget;
    widget.setObjectName(latin1("name"));
    proxy.bind(&widget, "QWidget");
    QCOMPARE(errorOf([&] { proxy.rangeError("[%d, %d]", -3, 7); }),
        latin1("Type error: object \"name\" of class \"QWidget\" accepts only values in the following range: "
               "[-3, 7]."));
}

void tst_STWidgetProxy::aWidgetOffTheScreenTakesItsWindowToTheCorner()
{
    FreeWindow free(QRect(-150, 300, 300, 200), QRect(10, 20, 50, 50));
    QVERIFY(becomesTrue([&] { return free.window.pos() == QPoint(-150, 300); }));
    Proxy proxy;
    proxy.bind(&free.child, "QWidget");
    proxy.prepareWidget();
    const QPoint corner = compat::availableGeometry(&free.child).topLeft();
    QVERIFY(becomesTrue([&] { return free.window.pos() == corner; }));
    proxy.prepareWidget();
    QCOMPARE(free.window.pos(), corner);
}

void tst_STWidgetProxy::aWidgetFarInsideAHugeWindowComesToTheCornerItself()
{
    FreeWindow free(QRect(-20, -30, 4000, 4000), QRect(2500, 2300, 50, 50));
    QVERIFY(becomesTrue([&] { return free.window.pos() == QPoint(-20, -30); }));
    Proxy proxy;
    proxy.bind(&free.child, "QWidget");
    proxy.prepareWidget();
    // The distance of the corner from where the widget is when its window is in the corner.
    QVERIFY(becomesTrue([&] { return free.window.pos() == QPoint(-2500, -2300); }));
}

void tst_STWidgetProxy::aClickStopsTheProcessingOfEventsUntilTheNextOperation()
{
    QPushButton button;
    button.setCheckable(true);
    button.setGeometry(100, 100, 200, 100);
    button.show();
    QVERIFY(becomesTrue([&] { return QApplication::widgetAt(button.mapToGlobal(button.rect().center())) == &button; }));
    Proxy proxy;
    proxy.bind(&button, "QPushButton");
    proxy.mouseAction(latin1("MouseClick:LeftButton:::"));
    proxy.syncEvents();
    QVERIFY(!button.isChecked());
    QVERIFY(becomesTrue([&] { return button.isChecked(); }));
}

void tst_STWidgetProxy::onlyTheFirstMnemonicIsStripped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("stripped");
    QTest::newRow("none") << latin1("Save") << latin1("Save");
    QTest::newRow("first") << latin1("&Save") << latin1("Save");
    QTest::newRow("inside") << latin1("Sa&ve") << latin1("Save");
    QTest::newRow("doubled") << latin1("Drag && &drop") << latin1("Drag & &drop");
    QTest::newRow("empty") << QString() << QString();
}

void tst_STWidgetProxy::onlyTheFirstMnemonicIsStripped()
{
    QFETCH(QString, text);
    QFETCH(QString, stripped);
    QCOMPARE(Proxy::stripMnemonic(text), stripped);
}

UNIT_TESTS(tst_stwidgetproxy, unit::withApplication<tst_STWidgetProxy>)
#include "tst_stwidgetproxy.moc"
