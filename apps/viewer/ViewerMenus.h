// The menus of plotvane-viewer beyond File, View and Help. Each family lives
// in its own source and binds its own handlers on the frame, with ids that
// wx hands out, so that the families never collide. Each appends its menus
// to the bar in the order the frame calls them.
#pragma once

class wxMenuBar;

namespace plotvane::viewer
{

class ViewerFrame;

// Zoom and Cursors: click zoom, zoom history, cursor lines and boxes,
// picking, annotations (InteractionMenus.cpp).
void AddInteractionMenus(ViewerFrame& frame, wxMenuBar& bar);
// Data, Chart and Tools: the data, axis and appearance dialogs
// (DialogMenus.cpp).
void AddDialogMenus(ViewerFrame& frame, wxMenuBar& bar);
// Measure: the measurement overlays (MeasureMenu.cpp).
void AddMeasureMenu(ViewerFrame& frame, wxMenuBar& bar);

} // namespace plotvane::viewer
