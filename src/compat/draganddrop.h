#pragma once

namespace compat {

// Ends the drag and drop that Qt runs for the application, if there is one, without a drop.
void cancelDrag();

// dragMark() tells how many event loops run, or with Qt 4 whether a drag does; cancelDragSince() cancels only a drag
// that has begun since that mark was taken.
int dragMark();
void cancelDragSince(int mark);

} // namespace compat
