#pragma once

#include <QtCore/Qt>

class QPoint;
class QWidget;

// Which of the application's windows is in front, at a point and with the focus.
namespace compat {

// QApplication::topLevelAt(), cached until forgetWindows(): each call asks the windowing system, which takes several
// round trips to an X server.
QWidget* windowAt(const QPoint& globalPosition);
// QApplication::widgetAt(), by means of the cached window.
QWidget* widgetAt(const QPoint& globalPosition);
// To be called when a window may have appeared, moved or gone: events were handled, or the application's code ran.
void forgetWindows();

// Whether the window never becomes active, since the application has told the windowing system so.
bool refusesFocus(const QWidget* window);
// QWidget::activateWindow(), but silent for those windows where Qt 5 and 6 do nothing but warn.
void activateWindow(QWidget* widget);
// QWidget::setFocus(), which runs the application's code: if that changes a window, windows are forgotten.
void setFocus(QWidget* widget, Qt::FocusReason reason = Qt::OtherFocusReason);

} // namespace compat
