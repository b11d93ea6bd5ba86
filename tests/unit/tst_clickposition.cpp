// Where check boxes, group boxes and radio buttons are clicked.

#include "bridge/csquishproxy.h"
#include "unittests.h"

#include <QTest>

#include <QCheckBox>
#include <QCommonStyle>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>

#include <memory>

using LmSquishProxy::CSquishProxy;

namespace {

const QPoint noPosition(-1, -1);

// Answers with one rectangle, and remembers what it was asked.
class RecordingStyle : public QCommonStyle
{
    Q_OBJECT

public:
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget*) const override
    {
        askedFor = element;
        optionType = option->type;
        optionRect = option->rect;
        return answer;
    }

    QRect subControlRect(
        ComplexControl control, const QStyleOptionComplex* option, SubControl subControl, const QWidget*) const override
    {
        askedFor = control == CC_GroupBox ? int(subControl) : -1;
        optionType = option->type;
        optionRect = option->rect;
        return answer;
    }

    QRect answer;
    mutable int askedFor = -1;
    mutable int optionType = -1;
    mutable QRect optionRect;
};

class OwnCheckBox : public QCheckBox
{
    Q_OBJECT
};

} // namespace

class tst_ClickPosition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void otherClassesHaveNoPosition();
    void deletedWidgetHasNoPosition();
    void styleIsAskedForTheRightRectangle();
    void centerIsOfInclusiveEdgesAndTruncated_data();
    void centerIsOfInclusiveEdgesAndTruncated();
    void clickAtThePositionToggles_data();
    void clickAtThePositionToggles();

private:
    CSquishProxy proxy{"proxy"};
};

void tst_ClickPosition::otherClassesHaveNoPosition()
{
    QPushButton push;
    QCheckBox check;
    QRadioButton radio;
    QGroupBox group;
    QCOMPARE(proxy.getCheckBoxCheckClickPos(&push), noPosition);
    QCOMPARE(proxy.getCheckBoxCheckClickPos(&radio), noPosition);
    QCOMPARE(proxy.getCheckBoxCheckClickPos(nullptr), noPosition);
    QCOMPARE(proxy.getGroupBoxCheckClickPos(&check), noPosition);
    QCOMPARE(proxy.getGroupBoxCheckClickPos(nullptr), noPosition);
    QCOMPARE(proxy.getRadioButtonClickPos(&group), noPosition);
    QCOMPARE(proxy.getRadioButtonClickPos(nullptr), noPosition);
    OwnCheckBox derived;
    QVERIFY(proxy.getCheckBoxCheckClickPos(&derived) != noPosition);
}

void tst_ClickPosition::deletedWidgetHasNoPosition()
{
    std::unique_ptr<QWidget> window(new QWidget);
    auto* const gone = new QCheckBox(window.get());
    window.reset();
    QCOMPARE(proxy.getCheckBoxCheckClickPos(gone), noPosition);
    QCOMPARE(proxy.getGroupBoxCheckClickPos(gone), noPosition);
    QCOMPARE(proxy.getRadioButtonClickPos(gone), noPosition);
}

void tst_ClickPosition::styleIsAskedForTheRightRectangle()
{
    RecordingStyle style;
    QCheckBox check;
    QGroupBox group;
    QRadioButton radio;
    QWidget* const widgets[] = {&check, &group, &radio};
    for (QWidget* widget : widgets) {
        widget->setStyle(&style);
        widget->resize(123, 45);
    }
    const QRect rect(0, 0, 123, 45);

    proxy.getCheckBoxCheckClickPos(&check);
    QCOMPARE(style.askedFor, int(QStyle::SE_CheckBoxClickRect));
    QCOMPARE(style.optionType, int(QStyleOption::SO_Button));
    QCOMPARE(style.optionRect, rect);
    proxy.getGroupBoxCheckClickPos(&group);
    QCOMPARE(style.askedFor, int(QStyle::SC_GroupBoxCheckBox));
    QCOMPARE(style.optionType, int(QStyleOption::SO_GroupBox));
    QCOMPARE(style.optionRect, rect);
    proxy.getRadioButtonClickPos(&radio);
    QCOMPARE(style.askedFor, int(QStyle::SE_RadioButtonClickRect));
    QCOMPARE(style.optionType, int(QStyleOption::SO_GroupBox));
    QCOMPARE(style.optionRect, rect);
}

void tst_ClickPosition::centerIsOfInclusiveEdgesAndTruncated_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QPoint>("center");
    QTest::newRow("odd size") << QRect(0, 0, 13, 13) << QPoint(6, 6);
    QTest::newRow("even size") << QRect(4, 6, 12, 10) << QPoint(9, 10);
    QTest::newRow("negative") << QRect(-4, -8, 2, 4) << QPoint(-3, -6);
    QTest::newRow("around zero") << QRect(-3, 0, 4, 1) << QPoint(-1, 0);
    QTest::newRow("no rectangle") << QRect() << QPoint(0, 0);
}

void tst_ClickPosition::centerIsOfInclusiveEdgesAndTruncated()
{
    QFETCH(QRect, rect);
    QFETCH(QPoint, center);
    RecordingStyle style;
    style.answer = rect;
    QCheckBox check;
    QGroupBox group;
    QRadioButton radio;
    QWidget* const widgets[] = {&check, &group, &radio};
    for (QWidget* widget : widgets)
        widget->setStyle(&style);
    QCOMPARE(proxy.getCheckBoxCheckClickPos(&check), center);
    QCOMPARE(proxy.getGroupBoxCheckClickPos(&group), center);
    QCOMPARE(proxy.getRadioButtonClickPos(&radio), center);
}

void tst_ClickPosition::clickAtThePositionToggles_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<bool>("rightToLeft");
    const QStringList styles = QStyleFactory::keys();
    QVERIFY(!styles.isEmpty());
    for (const QString& style : styles) {
        QTest::newRow(qPrintable(style + QLatin1String(", left to right"))) << style << false;
        QTest::newRow(qPrintable(style + QLatin1String(", right to left"))) << style << true;
    }
}

void tst_ClickPosition::clickAtThePositionToggles()
{
    QFETCH(QString, style);
    QFETCH(bool, rightToLeft);
    const std::unique_ptr<QStyle> styleObject(QStyleFactory::create(style));
    QWidget window;
    auto* check = new QCheckBox(QLatin1String("Check"), &window);
    auto* group = new QGroupBox(QLatin1String("Group"), &window);
    auto* radio = new QRadioButton(QLatin1String("Radio"), &window);
    group->setCheckable(true);
    group->setChecked(false);
    int top = 0;
    QWidget* const widgets[] = {check, group, radio};
    for (QWidget* widget : widgets) {
        widget->setStyle(styleObject.get());
        widget->setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        widget->setGeometry(0, top, 300, 60);
        top += 60;
    }
    window.show();
    QTest::mouseClick(check, Qt::LeftButton, {}, proxy.getCheckBoxCheckClickPos(check));
    QTest::mouseClick(group, Qt::LeftButton, {}, proxy.getGroupBoxCheckClickPos(group));
    QTest::mouseClick(radio, Qt::LeftButton, {}, proxy.getRadioButtonClickPos(radio));
    QVERIFY(check->isChecked());
    QVERIFY(group->isChecked());
    QVERIFY(radio->isChecked());
}

UNIT_TESTS(tst_clickposition, unit::withApplication<tst_ClickPosition>)
#include "tst_clickposition.moc"
