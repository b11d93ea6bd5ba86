#include "record/mouseplace.h"

#include "locate/json.h"
#include "record/eventwriter.h"
#include "record/itemat.h"

#include <QApplication>
#include <QPointer>
#include <QSplitterHandle>

namespace record {

QByteArray endOfDrag(QWidget* dragged, const QPoint& globalPosition)
{
    QWidget* receiver = QApplication::widgetAt(globalPosition);
    if (qobject_cast<QSplitterHandle*>(dragged))
        receiver = dragged->parentWidget(); // the handle moves with the mouse, within its splitter
    else if (receiver && dragged->isAncestorOf(receiver))
        receiver = dragged; // what shows the tab or section that is moved
    if (!receiver)
        return QByteArray();
    const QPoint position = receiver->mapFromGlobal(globalPosition);
    const Target target = targetOf(receiver, position);
    const QPointer<QWidget> guard(target.widget);
    const QByteArray item = itemAt(askedFor(receiver, target), position, ItemPlace::Told);
    QByteArray json;
    if (guard) {
        locate::JsonObject object(json);
        addWidget(object, guard);
        addPlace(object, target);
        if (!item.isEmpty())
            object.field("item") += item;
    }
    return json;
}

} // namespace record
