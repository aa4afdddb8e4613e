#include <plotvane/dialogs/DialogResources.h>

namespace plotvane
{

std::vector<DialogResource> LibraryDialogResources()
{
    return {ChartDialogResource(), InputTextDialogResource()};
}

} // namespace plotvane
