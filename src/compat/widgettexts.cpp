#include "compat/widgettexts.h"

#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x050000
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTextEdit>
#else
#include <QtGui/QComboBox>
#include <QtGui/QLineEdit>
#endif

namespace compat {

QString placeholderText(const QWidget* widget)
{
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return line->placeholderText();
#if QT_VERSION >= 0x050000
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return text->placeholderText();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return text->placeholderText();
#endif
#if QT_VERSION >= 0x050f00
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        return box->placeholderText();
#endif
    return QString();
}

QString accessibleName(const QWidget* widget)
{
#ifndef QT_NO_ACCESSIBILITY
    return widget->accessibleName();
#else
    Q_UNUSED(widget)
    return QString();
#endif
}

bool hidesText(const QWidget* widget)
{
    const auto* line = qobject_cast<const QLineEdit*>(widget);
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        line = box->lineEdit();
    return (line && line->echoMode() != QLineEdit::Normal) || widget->inputMethodHints() & Qt::ImhHiddenText;
}

} // namespace compat
