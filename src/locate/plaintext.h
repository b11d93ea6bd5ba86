#pragma once

#include <QtCore/QString>

namespace locate {

// A rich text as it is shown: without tags, comments, and what only a document's head has; entities are characters, and
// where a block or a line ends there is a blank. In one pass, however long and however broken the text is, for which a
// QTextDocument would lay out a page.
QString plainText(const QString& html);

} // namespace locate
