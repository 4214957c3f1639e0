// Draws a tree of views with a Qt painter. Live pictures are not drawn: only click-through windows have them.
//
// Threads: main thread only, within one paint event.
#pragma once

#include <QPainter>

#include "Platform/Linux/Views/ViewNode.h"

namespace platform::linux::widgets {

// `bottomLeft`: the root's origin in the painter's coordinates.
void paintViews(const views::ViewNode& root, QPainter& painter, QPointF bottomLeft);

}  // namespace platform::linux::widgets
