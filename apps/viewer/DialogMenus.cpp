#include "viewer/ViewerMenus.h"

namespace plotvane::viewer
{

void AddDialogMenus(ViewerFrame& /*frame*/, wxMenuBar& /*bar*/) {}

} // namespace plotvane::viewer
