#pragma once

#include <QtCore/QString>

#include <memory>

namespace compat {

// A regular expression that is looked for anywhere in a text: QRegularExpression's of Qt 5 and 6. Qt 4 has QRegExp only,
// without lazy repetition, look-behind and what begins with "(?", but for "(?i)" at the beginning, "(?:", "(?=" and "(?!".
//
// The pattern comes from a test and must not block the application: it is at most `longest` characters long, and does not
// match where the engine takes too many steps. QRegExp cannot be stopped: there, back references, and repetitions that
// multiply to more than `longest`, are errors.
class Pattern
{
public:
    static const int longest = 1000;

    explicit Pattern(const QString& pattern);
    ~Pattern();
    Q_DISABLE_COPY(Pattern)

    // Why there is no such pattern; empty for a good one.
    QString error() const;
    // Whether it is somewhere in the text.
    bool isIn(const QString& text) const;

private:
    struct Engine;
    std::unique_ptr<Engine> engine;
    QString reason;
};

} // namespace compat
