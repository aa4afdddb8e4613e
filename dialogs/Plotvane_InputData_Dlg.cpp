#include <plotvane/dialogs/Plotvane_InputData_Dlg.h>
