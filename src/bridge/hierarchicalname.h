#pragma once

#include <QtCore/QStringList>

class QWidget;

namespace LmSquishProxy {

// Hierarchical names: the names of a widget and of its ancestors, outermost first, as a list. A null element,
// as opposed to an empty one, is a wildcard: it stands for one level of any name. Unlike a widget path, a
// hierarchical name is not bounded by the window, and its names are those of bridgeName().

// How many null elements follow the last element that is not null; the list's size when all are null.
int trailingWildcards(const QStringList& name);

// Whether the ancestors of the widget fit the elements from this index down to 0; the widget itself fits the
// element after it. Below 0 there is nothing left to fit. One null element skips one level; the ancestor that
// fits the element before it may then be any number of levels further up. If none of them fits, that element
// counts as fitted and the test goes on above the top-level window, where every name fits: scripts rely on
// this leniency. A null first element, unless it belongs to a longer run of nulls, fits only a widget without
// a parent. Throws std::logic_error "checkPath(): internal error" for an index that is not in the list.
bool ancestorsFit(const QWidget* widget, const QStringList& name, int index);

} // namespace LmSquishProxy
