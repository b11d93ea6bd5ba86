// Names that a provider gives, in the search by hierarchical name.

#include "bridge/nameprovider.h"
#include "searchwindows.h"
#include "unittests.h"

#include <QTest>

namespace {

// Names objects by a dynamic property.
class PropertyProvider final : public LmSquishProxy::NameProvider
{
public:
    PropertyProvider() { LmSquishProxy::setNameProvider(this); }
    ~PropertyProvider() { LmSquishProxy::setNameProvider(nullptr); }
    Q_DISABLE_COPY(PropertyProvider)

    QString name(const QObject* object) override
    {
        asked << object;
        return object->property("providedName").toString();
    }

    QList<const QObject*> asked;
};

} // namespace

class tst_NameProvider : public QObject, private SearchWindows
{
    Q_OBJECT

private Q_SLOTS:
    void init() { showWindows(); }
    void cleanup() { deleteWindows(); }
    void providerNamesWidgetsThatHaveNone();
    void providerIsNotAskedForObjectsWithAName();
    void providedNamesFitAncestors();
    void anotherProviderTakesTheFirstOnesPlace();
};

void tst_NameProvider::providerNamesWidgetsThatHaveNone()
{
    auto* unnamed = new QWidget(left);
    unnamed->setProperty("providedName", latin1("given"));
    unnamed->show();
    QVERIFY(!find("given"));
    const PropertyProvider provider;
    QCOMPARE(find("given"), unnamed);
    QCOMPARE(find("cancel"), right->findChild<QWidget*>(latin1("cancel")));
    left->hide();
    QVERIFY(!find("given"));
    QCOMPARE(find("given", QString(), nullptr, false), unnamed);
}

void tst_NameProvider::providerIsNotAskedForObjectsWithAName()
{
    auto* emptied = add<QWidget>(left, "once");
    emptied->setObjectName(latin1("")); // set, though empty
    emptied->setProperty("providedName", latin1("given"));
    emptied->show();
    const PropertyProvider provider;
    QVERIFY(!find("given"));
    QWidget* const widgets[] = {main.get(), left, emptied};
    for (QWidget* named : widgets)
        QVERIFY(!provider.asked.contains(named));
    QCOMPARE(find("left/"), emptied);
}

void tst_NameProvider::providedNamesFitAncestors()
{
    auto* group = new QWidget(left);
    group->setProperty("providedName", latin1("group"));
    QWidget* const inside = add<QWidget>(group, "inside");
    group->show();
    QVERIFY(!find("group/inside"));
    const PropertyProvider provider;
    QCOMPARE(find("group/inside"), inside);
    QVERIFY(!find("left/inside"));
}

void tst_NameProvider::anotherProviderTakesTheFirstOnesPlace()
{
    auto* unnamed = new QWidget(left);
    unnamed->setProperty("providedName", latin1("given"));
    unnamed->show();
    const PropertyProvider first;
    const PropertyProvider second;
    QCOMPARE(find("given"), unnamed);
    QVERIFY(second.asked.contains(unnamed));
    QVERIFY(first.asked.isEmpty());
}

UNIT_TESTS(tst_nameprovider, unit::withApplication<tst_NameProvider>)
#include "tst_nameprovider.moc"
