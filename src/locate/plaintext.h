#pragma once

#include <QtCore/QString>

namespace locate {

// Converts rich text to the text that is shown: without tags, comments and the contents of a document's head, with
// entities as characters, and with a blank where a block or a line ends. Takes one pass, however long and however
// malformed the text is; a QTextDocument would lay out a page.
QString plainText(const QString& html);

} // namespace locate
