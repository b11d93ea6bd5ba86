#pragma once

#include <QtCore/QString>

class QObject;

namespace identify {

// A rule that gives a name to objects without an object name: a stem, which follows from what the user sees, and a suffix,
// by which names show the rule.
struct Derivation
{
    QLatin1String suffix;
    // Whether the rule gives this object a name. The object's own name is not looked at.
    bool (*applies)(const QObject* object);
    // The stem for an object to which the rule applies.
    QString (*stem)(const QObject* object);
    // Whether stem() would return that text, compared without building it. False for objects to which the rule does not
    // apply.
    bool (*hasStem)(const QObject* object, const QString& stem);

    bool hasName(const QObject* object, const QString& name) const;
    // The name without the suffix that it ends with.
    QString stemOfName(const QString& name) const;
};

// The first rule that applies to the object, null when none does.
const Derivation* derivationFor(const QObject* object);

// The rule whose suffix the name ends with, null when it is none of theirs.
const Derivation* derivationOfName(const QString& name);

} // namespace identify
