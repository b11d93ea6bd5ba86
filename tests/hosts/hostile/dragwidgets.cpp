#include "dragwidgets.h"

#include "later.h"
#include "scenes.h"
#include "testhost.h"
#include "watchfulapplication.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>

namespace {

// Qt does not stand the death of a drag's source while it lasts, so that it is this one.
QWidget* source()
{
    static QWidget* const widget = new QWidget; // never shown, and kept until the process ends
    return widget;
}

class DragLabel : public QLabel
{
public:
    explicit DragLabel(Stage& ownStage)
        : QLabel(words("Drag me"))
        , stage(ownStage)
    {
    }

protected:
    void mousePressEvent(QMouseEvent*) override { }
    void mouseMoveEvent(QMouseEvent*) override
    {
        const bool isGuarded = !WatchfulApplication::isSpontaneous() && WatchfulApplication::isFirstHand();
        Stage& ownStage = stage; // the label may be gone when the drag is over
        ownStage.drag(isGuarded ? Place::Guarded : Place::Fragile, [&ownStage] {
            auto* data = new QMimeData;
            data->setText(words("Drag me"));
            auto* drag = new QDrag(source()); // Qt deletes it
            drag->setMimeData(data);
            beginDrag(ownStage);
            drag->exec(Qt::CopyAction);
        });
    }

private:
    Stage& stage;
};

class DropLabel : public QLabel
{
public:
    DropLabel()
        : QLabel(words("Drop here"))
    {
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent* event) override { event->acceptProposedAction(); }
};

} // namespace

void beginDrag(Stage& stage)
{
    stage.host.journal(words("fault drag"));
    Later::run(50 + stage.chance.below(200), [] {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(source(), &escape);
    });
}

void putDragLabels(Stage& stage, QWidget* centre)
{
    put(centre, new DragLabel(stage), "dragLabel");
    put(centre, new DropLabel, "dropLabel");
}
