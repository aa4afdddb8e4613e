#include <plotvane/view/ChartText.h>

namespace plotvane
{

const char* ChartTextLayerName(ChartTextLayer layer)
{
    switch (layer)
    {
    case ChartTextLayer::AxisName:
        return "axis-name";
    case ChartTextLayer::GridValue:
        return "grid-value";
    case ChartTextLayer::Cursor:
        return "cursor";
    case ChartTextLayer::Overlay:
        return "overlay";
    case ChartTextLayer::Annotation:
        return "annotation";
    case ChartTextLayer::Other:
        break;
    }
    return "other";
}

DWORD& LastGLColor()
{
    static DWORD color = 0;
    return color;
}

} // namespace plotvane
