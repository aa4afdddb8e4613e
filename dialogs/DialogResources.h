// The library's dialog resources, one function per dialog beside its class;
// FindDialogResource looks them up by id.
#pragma once

#include <plotvane/dialogs/Dialog.h>

#include <vector>

namespace plotvane
{

// Every resource of the library, in no particular order.
std::vector<DialogResource> LibraryDialogResources();

DialogResource ChartDialogResource();     // 20502, Plotvane_Dlg.cpp
DialogResource InputTextDialogResource(); // 20507, Plotvane_InputText_Dlg.cpp

} // namespace plotvane
