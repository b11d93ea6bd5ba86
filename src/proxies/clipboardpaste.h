#pragma once

#include <QApplication>
#include <QClipboard>

namespace proxies {

// Puts a text on the clipboard and has it pasted. On X11 another application's claim of the clipboard may be on its way to
// this one, and later take the text away from it: then that is done again.
template <class Paste>
void pasteText(const QString& text, Paste paste)
{
    const int mostAttempts = 3;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        QClipboard* const clipboard = QApplication::clipboard();
        clipboard->setText(text, QClipboard::Clipboard);
        paste();
        if (clipboard->ownsClipboard() || clipboard->text() == text)
            return;
    }
}

} // namespace proxies
