#include "identify/windowlookup.h"

#include <QApplication>
#include <QWidget>

namespace identify {

namespace {

const QLatin1Char separator(':');
const QLatin1String objectNamePrefix("Widget:");
const QLatin1String activePopupName("Widget:ActivePopupWidget");
const QLatin1String activeModalName("Widget:ActiveModalWidget");

// Whether the name is the special form, alone or followed by ":" and something.
bool isForm(const QString& name, QLatin1String form)
{
    const int length = static_cast<int>(qstrlen(form.latin1()));
    return name.startsWith(form) && (name.size() == length || name.at(length) == separator);
}

// The empty prefix fits every title. Qt 4 does not think so when the title was never set.
bool titleStartsWith(const QWidget* window, const QString& prefix)
{
    return prefix.isEmpty() || window->windowTitle().startsWith(prefix);
}

int findActiveModal(QWidget*& window, const QString& titlePrefix)
{
    window = QApplication::activeModalWidget();
    return window && window->isVisible() && titleStartsWith(window, titlePrefix) ? 1 : 0;
}

} // namespace

QString lookupErrorName(int error)
{
    static const char* const names[]
        = {"NoError", "WindowNotFoundError", "WindowAmbiguousError", "WindowNotActivePopupError",
            "WindowNotActiveModalError", "WidgetNotFoundError", "WidgetNotVisibleError", "WidgetAmbiguousError"};
    return error >= NoError && error <= WidgetAmbiguousError ? QString::fromLatin1(names[error]) : QString();
}

int findWindow(QWidget*& window, const QString& name)
{
    if (isForm(name, activePopupName)) {
        window = QApplication::activePopupWidget();
        return window && window->isVisible() ? 1 : 0;
    }
    if (isForm(name, activeModalName))
        return findActiveModal(window, name.mid(static_cast<int>(qstrlen(activeModalName.latin1())) + 1));

    const bool byObjectName = name.startsWith(objectNamePrefix);
    int count = 0;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* widget : topLevels) {
        if (!widget->isVisible())
            continue;
        if (byObjectName ? objectNamePrefix + widget->objectName() == name : titleStartsWith(widget, name)) {
            window = widget;
            ++count;
        }
    }
    return count;
}

LookupError activityError(const QWidget* window, const QWidget* exemptWindow)
{
    if (const QWidget* popup = QApplication::activePopupWidget())
        return window == popup || window == exemptWindow ? NoError : WindowNotActivePopupError;
    const QWidget* modal = QApplication::activeModalWidget();
    return !modal || window == modal ? NoError : WindowNotActiveModalError;
}

} // namespace identify
