#include "proxy/stapplicationproxy.h"

#include "proxy/proxytable.h"
#include "proxy/sterror.h"
#include "proxy/stwidgetproxy.h"
#include "unittests.h"

#include <QCheckBox>
#include <QCommandLinkButton>
#include <QFrame>
#include <QProgressBar>
#include <QSet>
#include <QTest>

class tst_STApplicationProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTableNamesEachClassOnceAndInOrder();
    void theNearestRegisteredClassServes_data();
    void theNearestRegisteredClassServes();
    void theProxyOfAClassIsShared();
    void eachClassHasAProxyOfItsOwn();
};

namespace {

// Every class that is served as itself, in the order in which they are registered.
const char* const classNames[] = {"QWidget", "QLabel", "QAbstractButton", "QPushButton", "QToolButton", "QRadioButton",
    "QCheckBox", "QGroupBox", "QComboBox", "QLineEdit", "QListView", "QTreeView", "QMenuBar", "QMenu", "QTextEdit",
    "QSlider", "QSpinBox", "QDoubleSpinBox", "QDateTimeEdit", "QDateEdit", "QTimeEdit", "QTabBar", "QToolBox",
    "QTableView", "QTableWidget", "QDockWidget", "QFileDialog", "QAbstractItemView", "QStatusBar"};

} // namespace

void tst_STApplicationProxy::theTableNamesEachClassOnceAndInOrder()
{
    QCOMPARE(proxy::proxyTableSize, sizeof(classNames) / sizeof(classNames[0]));
    for (std::size_t row = 0; row < proxy::proxyTableSize; ++row)
        QCOMPARE(proxy::proxyTable[row].qtClassName, classNames[row]);
}

void tst_STApplicationProxy::theNearestRegisteredClassServes_data()
{
    QTest::addColumn<QWidget*>("widget");
    QTest::addColumn<QString>("className");
    QTest::newRow("own class") << static_cast<QWidget*>(new QCheckBox) << QString::fromLatin1("QCheckBox");
    QTest::newRow("derived") << static_cast<QWidget*>(new QCommandLinkButton) << QString::fromLatin1("QPushButton");
    QTest::newRow("frame") << static_cast<QWidget*>(new QFrame) << QString::fromLatin1("QWidget");
    QTest::newRow("progress bar") << static_cast<QWidget*>(new QProgressBar) << QString::fromLatin1("QWidget");
}

void tst_STApplicationProxy::theNearestRegisteredClassServes()
{
    QFETCH(QWidget*, widget);
    QFETCH(QString, className);
    STApplicationProxy registry;
    QCOMPARE(QString::fromLatin1(registry.resolveClassName(widget, QString())), className);
    QCOMPARE(registry.property(widget, QString(), QLatin1String("silkClassName"), QVariant()).toString(), className);
    delete widget;
}

void tst_STApplicationProxy::theProxyOfAClassIsShared()
{
    STApplicationProxy registry;
    QCheckBox first;
    QCheckBox second;
    STWidgetProxy* proxy = registry.proxyFor(&first, QString());
    QVERIFY(proxy->checkedWidget(nullptr) == &first);
    QVERIFY(registry.proxyFor(&second, QString()) == proxy);
    QVERIFY(proxy->checkedWidget(nullptr) == &second);
}

void tst_STApplicationProxy::eachClassHasAProxyOfItsOwn()
{
    STApplicationProxy registry;
    QCheckBox box;
    QSet<STWidgetProxy*> proxies;
    const char* const chain[] = {"QCheckBox", "QAbstractButton", "QWidget"};
    for (const char* className : chain)
        proxies.insert(registry.proxyFor(&box, QLatin1String(className)));
    QCOMPARE(proxies.size(), 3);
}

UNIT_TESTS(tst_stapplicationproxy, unit::withApplication<tst_STApplicationProxy>)
#include "tst_stapplicationproxy.moc"
