#include <plotvane/dialogs/DialogResources.h>

namespace plotvane
{

std::vector<DialogResource> LibraryDialogResources()
{
    return {ChartDialogResource(),     InputTextDialogResource(),   AttributeDialogResource(),
            InputDataDialogResource(), EnvironmentDialogResource(), ColorsetDialogResource()};
}

} // namespace plotvane
