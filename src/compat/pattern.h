#pragma once

#include <QtCore/QString>

#include <memory>

namespace compat {

// A regular expression that is searched for anywhere in a text: a QRegularExpression with Qt 5 and 6. Qt 4 has only
// QRegExp, without lazy repetition and look-behind; of the groups that begin with "(?" it knows "(?:", "(?=", "(?!",
// and at the beginning "(?i)".
//
// The pattern comes from a test and must not block the application: it is at most `maximumLength` characters long, and does not
// match where the engine takes too many steps. QRegExp cannot be stopped: there, back references, and repetitions that
// multiply to more than `maximumLength`, are errors.
class Pattern
{
public:
    static const int maximumLength = 1000;

    explicit Pattern(const QString& pattern);
    ~Pattern();
    Q_DISABLE_COPY(Pattern)

    // Why the pattern is invalid; empty for a valid one.
    QString error() const;
    // Whether it is somewhere in the text.
    bool isIn(const QString& text) const;

private:
    struct Engine;
    std::unique_ptr<Engine> engine;
    QString reason;
};

} // namespace compat
