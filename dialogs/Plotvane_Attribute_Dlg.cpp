#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>
