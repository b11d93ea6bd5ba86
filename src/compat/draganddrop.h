#pragma once

namespace compat {

// Ends the drag and drop that Qt runs for the application, if there is one, without a drop.
void cancelDrag();

// The same for one that has begun since dragMark() answered this mark, in a loop that runs on top of what ran then.
int dragMark();
void cancelDragSince(int mark);

} // namespace compat
