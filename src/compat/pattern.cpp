#include "compat/pattern.h"

#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x050000
#include <QtCore/QRegularExpression>
#else
#include <QtCore/QRegExp>
#endif

namespace compat {

#if QT_VERSION >= 0x050000

struct Pattern::Engine
{
    // A step of the engine takes some nanoseconds; its default limit of ten million steps would block the application.
    explicit Engine(const QString& pattern)
        : expression(QLatin1String("(*LIMIT_MATCH=100000)") + pattern)
    {
    }

    QString error() const { return expression.isValid() ? QString() : expression.errorString(); }
    bool isIn(const QString& text) const { return expression.match(text).hasMatch(); }

    QRegularExpression expression;
};

#else

namespace {

// The product of all repetitions in braces: how often a part of the pattern can be repeated if they are nested.
double repetitions(const QString& pattern)
{
    double product = 1;
    QRegExp braces(QLatin1String("\\{(\\d*),?(\\d*)\\}"));
    for (int at = braces.indexIn(pattern); at >= 0; at = braces.indexIn(pattern, at + 1))
        product *= qMax(1.0, qMax(braces.cap(1).toDouble(), braces.cap(2).toDouble()));
    return product;
}

bool hasBackReference(const QString& pattern)
{
    for (int i = 0; i + 1 < pattern.size(); ++i) {
        if (pattern.at(i) != QLatin1Char('\\'))
            continue;
        ++i;
        if (pattern.at(i) >= QLatin1Char('1') && pattern.at(i) <= QLatin1Char('9'))
            return true;
    }
    return false;
}

} // namespace

struct Pattern::Engine
{
    explicit Engine(const QString& pattern)
    {
        const QString anyCase = QLatin1String("(?i)");
        const bool ignoresCase = pattern.startsWith(anyCase);
        if (repetitions(pattern) > maximumLength)
            refusal = QLatin1String("too many repetitions");
        else if (hasBackReference(pattern))
            refusal = QLatin1String("a back reference");
        else
            expression = QRegExp(ignoresCase ? pattern.mid(anyCase.size()) : pattern,
                ignoresCase ? Qt::CaseInsensitive : Qt::CaseSensitive, QRegExp::RegExp2);
    }

    QString error() const
    {
        if (!refusal.isEmpty())
            return refusal;
        return expression.isValid() ? QString() : expression.errorString();
    }
    bool isIn(const QString& text) const { return expression.indexIn(text) >= 0; }

    QRegExp expression;
    QString refusal;
};

#endif

Pattern::Pattern(const QString& pattern)
{
    if (pattern.size() > maximumLength)
        reason = QLatin1String("too long");
    else
        engine = std::make_unique<Engine>(pattern);
}

Pattern::~Pattern() = default;

QString Pattern::error() const
{
    return engine ? engine->error() : reason;
}

bool Pattern::isIn(const QString& text) const
{
    return engine && engine->isIn(text);
}

} // namespace compat
