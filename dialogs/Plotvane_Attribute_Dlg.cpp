#include "dialogs/Plotvane_Attribute_Dlg.h"
