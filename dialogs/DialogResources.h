// The library's dialog resources, one function per dialog beside its class;
// FindDialogResource looks them up by id.
#pragma once

#include <plotvane/dialogs/Dialog.h>

#include <vector>

namespace plotvane
{

// Every resource of the library, in no particular order.
std::vector<DialogResource> LibraryDialogResources();

DialogResource ChartDialogResource();       // 20502, Plotvane_Dlg.cpp
DialogResource InputTextDialogResource();   // 20507, Plotvane_InputText_Dlg.cpp
DialogResource AttributeDialogResource();   // 20503, Plotvane_Attribute_Dlg.cpp
DialogResource InputDataDialogResource();   // 20504, Plotvane_InputData_Dlg.cpp
DialogResource EnvironmentDialogResource(); // 20509, GLPlotvane_Environment_Dlg.cpp
DialogResource ColorsetDialogResource();    // 20510, GLPlotvane_Environment_Colorset_Dlg.cpp

} // namespace plotvane
