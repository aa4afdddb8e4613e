#include "viewer/ViewerMenus.h"

namespace plotvane::viewer
{

void AddInteractionMenus(ViewerFrame& /*frame*/, wxMenuBar& /*bar*/) {}

} // namespace plotvane::viewer
