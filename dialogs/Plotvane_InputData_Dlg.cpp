#include "dialogs/Plotvane_InputData_Dlg.h"
