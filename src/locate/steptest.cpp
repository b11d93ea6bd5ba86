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

bool StepTest::fits(QWidget* widget)
{
    if (!isOfClass(widget))
        return false;
    for (Prepared& condition : conditions) {
        if (!meets(widget, condition))
            return false;
    }
    return properties.empty() || canHaveProperties(widget);
}

bool StepTest::meets(QWidget* widget, Prepared& condition)
{
    switch (condition.key) {
    case Key::Name:
        return condition.test.fits(widget->objectName());
    case Key::Path:
        return condition.atPath.contains(widget);
    case Key::Label:
        return condition.labelled.contains(widget);
    case Key::Reference:
        return widget == condition.referred;
    default:
        const TextReader read = condition.key == Key::Text ? kinds.of(widget).readTexts : condition.read;
        return read && read(widget, condition.test);
    }
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

// Runs no code of the application.
bool StepTest::canHaveProperties(const QWidget* widget)
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
    const auto unmet = std::count_if(
        conditions.begin(), conditions.end(), [&](Prepared& condition) { return !meets(widget, condition); });
    return static_cast<int>(unmet) + (isOfClass(widget) ? 0 : 1);
}

bool StepTest::isOfClass(const QWidget* widget)
{
    return className.isEmpty() || classFits.of(widget->metaObject(), [this](const QMetaObject* metaObject) {
        while (metaObject && className != metaObject->className())
            metaObject = metaObject->superClass();
        return metaObject != nullptr;
    });
}

} // namespace locate
