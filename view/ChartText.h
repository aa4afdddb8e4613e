// Every text a chart draws, as data: a host may hand the view a callback
// that receives each one with its logical position, its colour and the
// layer that drew it. Tests read texts this way instead of pixels; hosts
// list what a chart shows, for a report or an accessibility tree.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueTypes.h>

#include <functional>

namespace plotvane
{

enum class ChartTextLayer
{
    Other,
    AxisName,
    GridValue,
    Cursor,
    Overlay,
    Annotation,
};

// "axis-name", "grid-value", ...: stable names for reports.
const char* ChartTextLayerName(ChartTextLayer layer);

struct ChartText
{
    CString strText;
    // The first character's origin, in the view's logical units.
    CPointD ptLogical;
    // COLORREF, red in the low byte: the colour the text is drawn in.
    DWORD crColor = 0;
    ChartTextLayer layer = ChartTextLayer::Other;
};

using ChartTextHook = std::function<void(const ChartText&)>;

// What a font reports as it prints. A font knows neither its colour nor
// the layer that asked; the view that owns it adds both.
class TextSink
{
public:
    virtual void OnText(const CString& text, const CPointD& position) = 0;

protected:
    ~TextSink() = default;
};

// The colour last given to GL through SetGLColor. Texts take the current
// colour; while a display list compiles GL does not track it, so the view
// reads it from here.
DWORD& LastGLColor();

} // namespace plotvane
