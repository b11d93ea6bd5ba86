#include "proxy/eventkiller.h"

bool EventKiller::eventFilter(QObject*, QEvent* event)
{
    return event->type() == eventType;
}
