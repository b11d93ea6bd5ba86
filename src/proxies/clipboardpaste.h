#pragma once

#include <QApplication>
#include <QClipboard>

namespace proxies {

// Puts a text on the clipboard and has it pasted. Repeated if the text is lost meanwhile: on X11 another application's
// claim of the clipboard may have been on its way.
template <class Paste>
void pasteText(const QString& text, Paste paste)
{
    const int maximumAttempts = 3;
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        QClipboard* const clipboard = QApplication::clipboard();
        clipboard->setText(text, QClipboard::Clipboard);
        paste();
        if (clipboard->ownsClipboard() || clipboard->text() == text)
            return;
    }
}

} // namespace proxies
