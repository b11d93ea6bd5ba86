#pragma once

#include "locate/locator.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

class QWidget;

// The rules of locators once more, slow and obvious, to compare the agent's own with.
namespace naive {

// The words of a locator, each a step's end, a position, a condition or a class; empty where it is no locator.
struct Word
{
    enum class Kind { Within, Position, Condition, Class };
    Kind kind;
    QString key; // of a condition; else the word
    QString sign;
    QString value;
};
QList<Word> wordsOf(const QString& locator);

// The widgets that the words find, for classes, names, texts, visibility and positions; with other conditions `isKnown` is
// false.
QList<QWidget*> widgetsOf(QWidget* window, const QList<Word>& words, bool& isKnown);

} // namespace naive
