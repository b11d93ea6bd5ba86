#pragma once

#include "stage.h"

#include <QAbstractItemView>

// Widgets to drag and to drop on, for scenes: in the middle of a drag and drop widgets are destroyed, windows close and
// models change like anywhere else.

// To be called before a drag: journals it, and ends it when nobody has dropped it in time, as Escape does.
void beginDrag(Stage& stage);

// A view whose rows can be dragged and dropped. Qt's function goes on with the view when the drag is over.
template <class View>
class DraggingView : public View
{
public:
    explicit DraggingView(Stage& ownStage)
        : stage(ownStage)
    {
        this->setDragDropMode(QAbstractItemView::DragDrop);
        this->setDefaultDropAction(stage.chance.oneIn(2) ? Qt::MoveAction : Qt::CopyAction);
    }

protected:
    void startDrag(Qt::DropActions actions) override
    {
        stage.drag(Place::Fragile, [&] {
            beginDrag(stage);
            View::startDrag(actions);
        });
    }

private:
    Stage& stage;
};

// A label with a drag of the application's own, in which the label can die, and one that takes everything.
void putDragLabels(Stage& stage, QWidget* centre);
