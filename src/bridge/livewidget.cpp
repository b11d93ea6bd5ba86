#include "bridge/livewidget.h"

#include <QApplication>
#include <QWidget>

namespace LmSquishProxy {

QWidget* liveWidget(QWidget* widget)
{
    return widget && QApplication::allWidgets().contains(widget) ? widget : nullptr;
}

} // namespace LmSquishProxy
