#pragma once

#include "compat/pattern.h"
#include "locate/locator.h"
#include "locate/widgettexts.h"

#include <memory>

namespace locate {

// Whether a text is the one that a condition is about.
class TextTest : public TextVisitor
{
public:
    explicit TextTest(const Condition& condition);

    // Whether what is shown of the text fulfils the condition. The value may be written as it is shown, or as the
    // application has it, with the marks of mnemonics: "R&D" and "R&&D".
    bool visit(const QString& text, Markup markup) override;
    // Whether the text itself, as it stands, does.
    bool fits(const QString& text) const;

private:
    const Operator comparison;
    const QString value;
    const QString asShown;
    const QString asWritten; // null where that is the same
    const ShownComparison shownOne;
    const ShownComparison writtenOne;
    std::shared_ptr<const compat::Pattern> pattern; // where the value is one
};

} // namespace locate
