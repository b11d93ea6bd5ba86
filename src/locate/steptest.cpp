#include "locate/steptest.h"

#include "compat/variant.h"
#include "identify/namesearch.h"
#include "identify/widgetpath.h"
#include "locate/references.h"

#include <QVariant>
#include <QWidget>
#include <QtCore/QMetaProperty>

#include <algorithm>
#include <iterator>

namespace locate {

namespace {

struct ReaderRow
{
    Key key;
    TextReader read;
};

const ReaderRow readerRows[] = {
    {Key::Placeholder, readPlaceholder},
    {Key::ToolTip, readToolTip},
    {Key::Action, readAction},
    {Key::Accessible, readAccessibleName},
    {Key::Title, readTitle},
};

TextReader readerFor(Key key)
{
    const auto* row = std::find_if(
        std::begin(readerRows), std::end(readerRows), [key](const ReaderRow& r) { return r.key == key; });
    return row == std::end(readerRows) ? nullptr : row->read;
}

// The widgets of a window at a path of the commands, parents before children.
class WidgetsAtPath : public identify::NameSearch
{
public:
    WidgetsAtPath(QWidget* window, const identify::WidgetPath& searchedPath)
        : NameSearch(identify::searchName(searchedPath.lastElement()))
        , path(searchedPath)
    {
        search(window);
        if (!widgets.empty() && widgets.back() == window) // the search comes to it last
            std::rotate(widgets.begin(), widgets.end() - 1, widgets.end());
    }

    std::vector<QWidget*> widgets;

protected:
    void found(QWidget* widget, Kind) override
    {
        if (pathFitsFound(path))
            widgets.push_back(widget);
    }

private:
    const identify::WidgetPath& path;
};

bool isNamed(const QWidget* widget, const TextTest& test)
{
    return test.fits(widget->objectName());
}

QString textOf(const QVariant& value)
{
    if (compat::typeOf(value) == QMetaType::Bool)
        return QLatin1String(value.toBool() ? "true" : "false");
    return compat::textOf(value);
}

} // namespace

// A property as one class has it.
struct StepTest::ClassProperty
{
    int index = -1; // -1: the class has no such property
    bool isText = false;
};

struct StepTest::Prepared
{
    Key key;
    TextTest test;
    QByteArray property;
    TextReader read; // of the key, if it does not depend on the widget's class
    ClassMemo<ClassProperty> propertyOfClass;
    QSet<const QWidget*> atPath;
    QSet<const QWidget*> labelled;
    const QWidget* referred;
};

StepTest::StepTest(const Step& step, QWidget* window)
    : className(step.className)
{
    for (const Condition& condition : step.conditions)
        (condition.key == Key::Property ? properties : conditions).push_back(prepare(condition, window));
    asksForClass = !className.isEmpty() || !properties.empty()
        || std::any_of(step.conditions.begin(), step.conditions.end(),
            [](const Condition& condition) { return condition.key == Key::Text; });
}

StepTest::~StepTest() = default;

StepTest::Prepared StepTest::prepare(const Condition& condition, QWidget* window)
{
    Prepared prepared{
        condition.key, TextTest(condition), condition.property, readerFor(condition.key), {}, {}, {}, nullptr};
    if (condition.key == Key::Path) {
        const std::vector<QWidget*> widgets = WidgetsAtPath(window, identify::WidgetPath(condition.value)).widgets;
        for (const QWidget* widget : widgets)
            prepared.atPath.insert(widget);
        if (!hasPath)
            atFirstPath = widgets;
        hasPath = true;
    }
    if (condition.key == Key::Reference)
        prepared.referred = References::all().widgetOf(condition.value.toLongLong());
    else if (condition.key == Key::Label)
        prepared.labelled = labelsOf(window).labelledBy(prepared.test);
    return prepared;
}

const Labels& StepTest::labelsOf(QWidget* window)
{
    if (!labels)
        labels = std::make_unique<Labels>(window, kinds);
    return *labels;
}

bool StepTest::meets(QWidget* widget, const ClassFacts& facts, Prepared& condition)
{
    switch (condition.key) {
    case Key::Name:
        return isNamed(widget, condition.test);
    case Key::Path:
        return condition.atPath.contains(widget);
    case Key::Label:
        return condition.labelled.contains(widget);
    case Key::Reference:
        return widget == condition.referred;
    default:
        const TextReader read = condition.key == Key::Text ? facts.readTexts : condition.read;
        return read && read(widget, condition.test);
    }
}

bool StepTest::fits(QWidget* widget)
{
    static const ClassFacts ofAnyClass{true, nullptr, true};
    const ClassFacts& facts = asksForClass ? factsOf(widget) : ofAnyClass;
    if (!facts.fits)
        return false;
    for (Prepared& condition : conditions) {
        if (!meets(widget, facts, condition))
            return false;
    }
    return facts.hasProperties || hasDynamicProperties(widget);
}

bool StepTest::readTexts(Key key, const QWidget* widget, TextVisitor& visitor) const
{
    if (key == Key::Name)
        return visitor.visit(widget->objectName(), Markup::None);
    const QWidget* source = key == Key::Label ? labels->widgetThatLabels(widget) : widget;
    const TextReader read = !source             ? nullptr
        : key == Key::Text || key == Key::Label ? kinds.of(source).readTexts
                                                : readerFor(key);
    return read && read(source, visitor);
}

const StepTest::ClassProperty& StepTest::propertyOf(const QWidget* widget, Prepared& condition)
{
    return condition.propertyOfClass.of(widget->metaObject(), [&condition](const QMetaObject* metaObject) {
        ClassProperty result;
        result.index = metaObject->indexOfProperty(condition.property.constData());
        result.isText = compat::isTextProperty(metaObject->property(result.index));
        return result;
    });
}

bool StepTest::propertyFits(const QWidget* widget, Prepared& condition)
{
    const ClassProperty& own = propertyOf(widget, condition);
    if (own.isText)
        return condition.test.fits(compat::readTextProperty(widget, own.index));
    const QVariant value = own.index >= 0 ? compat::readProperty(widget, widget->metaObject()->property(own.index))
                                          : compat::readProperty(widget, condition.property.constData());
    return value.isValid() && condition.test.fits(textOf(value));
}

bool StepTest::propertiesFit(const QWidget* widget, const std::function<bool()>& isAlive)
{
    for (Prepared& condition : properties) {
        if (!isAlive() || !propertyFits(widget, condition))
            return false;
    }
    return true;
}

// Whether the widget has, as dynamic ones, the properties that its class does not have. Runs no code of the application.
bool StepTest::hasDynamicProperties(const QWidget* widget)
{
    return std::all_of(properties.begin(), properties.end(), [&](Prepared& condition) {
        return propertyOf(widget, condition).index >= 0 || widget->dynamicPropertyNames().contains(condition.property);
    });
}

int StepTest::conditionCount() const
{
    return static_cast<int>(conditions.size() + properties.size()) + (className.isEmpty() ? 0 : 1);
}

int StepTest::unmetCount(QWidget* widget)
{
    const ClassFacts& facts = factsOf(widget);
    const auto unmet = std::count_if(
        conditions.begin(), conditions.end(), [&](Prepared& condition) { return !meets(widget, facts, condition); });
    return static_cast<int>(unmet) + (facts.fits ? 0 : 1);
}

const StepTest::ClassFacts& StepTest::factsOf(const QWidget* widget)
{
    return classFacts.of(widget->metaObject(), [this, widget](const QMetaObject* metaObject) {
        ClassFacts facts{className.isEmpty(), kinds.of(widget).readTexts, true};
        for (const Prepared& condition : properties)
            facts.hasProperties
                = facts.hasProperties && metaObject->indexOfProperty(condition.property.constData()) >= 0;
        for (; metaObject && !facts.fits; metaObject = metaObject->superClass())
            facts.fits = className == metaObject->className();
        return facts;
    });
}

} // namespace locate
