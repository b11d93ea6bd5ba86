#pragma once

#include "locate/kinds.h"
#include "locate/labels.h"
#include "locate/locator.h"
#include "locate/texttest.h"

#include <QtCore/QSet>

#include <functional>
#include <memory>
#include <vector>

namespace locate {

// Tests whether widgets of one window fulfil the conditions of one step of a locator. Only for one walk through the
// window, of which it caches labels, paths and classes.
class StepTest
{
public:
    StepTest(const Step& step, QWidget* window);
    ~StepTest();
    Q_DISABLE_COPY(StepTest)

    // Whether the widget fulfils the step, and has the properties that it asks for, whatever their values. Runs no code of
    // the application.
    bool fits(QWidget* widget);
    // Whether the properties have the values that are asked for. Runs code of the application, which may delete the
    // widget: `isAlive` is asked before each read.
    bool hasProperties() const { return !properties.empty(); }
    bool propertiesFit(const QWidget* widget, const std::function<bool()>& isAlive);

    // The widgets at the path that the step asks for, parents before children; null if it asks for none. As for the
    // commands, those in other windows below this one are among them.
    const std::vector<QWidget*>* widgetsAtPath() const { return hasPath ? &atFirstPath : nullptr; }

    // The number of conditions, the class included, and how many of them the widget does not fulfil, properties not
    // counted.
    int conditionCount() const;
    int unmetCount(QWidget* widget);

    // Passes the texts that a condition with that key compares to the visitor; true when one was enough.
    bool readTexts(Key key, const QWidget* widget, TextVisitor& visitor) const;

private:
    struct ClassProperty;
    struct Prepared;
    // All that conditions ask of a class, looked up at once.
    struct ClassFacts
    {
        bool fits;
        TextReader readTexts; // null where it shows none
        bool hasProperties; // all that are asked for
    };

    const ClassFacts& factsOf(const QWidget* widget);
    bool hasDynamicProperties(const QWidget* widget);
    static const ClassProperty& propertyOf(const QWidget* widget, Prepared& condition);
    static bool propertyFits(const QWidget* widget, Prepared& condition);
    static bool meets(QWidget* widget, const ClassFacts& facts, Prepared& condition);
    const Labels& labelsOf(QWidget* window);
    Prepared prepare(const Condition& condition, QWidget* window);

    const QByteArray className;
    std::vector<Prepared> conditions;
    std::vector<Prepared> properties;
    bool hasPath = false;
    std::vector<QWidget*> atFirstPath; // of the first of several path conditions
    WidgetKinds kinds;
    std::unique_ptr<Labels> labels; // where a condition is about them
    bool asksForClass = false;
    ClassMemo<ClassFacts> classFacts;
};

} // namespace locate
