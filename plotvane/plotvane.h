// Every public class of the plotvane library.
#pragma once

#include <plotvane/foundation/ArrayRecord.h>
#include <plotvane/foundation/Dec.h>
#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/Geometry.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCArray.h>
#include <plotvane/foundation/MFCFile.h>
#include <plotvane/foundation/MFCObject.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/StringEx.h>
#include <plotvane/foundation/TLUtility.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>

#include <plotvane/io/CsvReader.h>
#include <plotvane/io/SignalFile.h>

#include <plotvane/measure/ChartPointD.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeGenerator.h>
#include <plotvane/measure/EyeRotation.h>

#include <plotvane/document/AxisAttribute.h>
#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/GLPlotvane_Environment.h>
#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/Image.h>
#include <plotvane/platform/PixelFormats.h>
#include <plotvane/platform/WinApi.h>
#include <plotvane/platform/WinTypes.h>
#include <plotvane/platform/Wnd.h>
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/platform/headless/HeadlessChart.h>

#include <plotvane/view/GLChartView.h>
#include <plotvane/view/GLTextBmp.h>
#include <plotvane/view/GLWnd.h>

#include <plotvane/dialogs/ColorDialog.h>
#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/dialogs/ExXListCtrl.h>
#include <plotvane/dialogs/GLPlotvane_Environment_Colorset_Dlg.h>
#include <plotvane/dialogs/GLPlotvane_Environment_Dlg.h>
#include <plotvane/dialogs/Menu.h>
#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>
#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/dialogs/Plotvane_InputData_Dlg.h>
#include <plotvane/dialogs/Plotvane_InputText_Dlg.h>
#include <plotvane/dialogs/StatusBar.h>
#include <plotvane/dialogs/XListCtrl.h>
