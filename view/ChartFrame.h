// ChartFrame: the geometry that one paint of the chart view draws in. The
// view takes it once at the top of RenderScene, and every layer of that
// paint (grid, axes, curves, cursors, overlays) places what it draws by it
// instead of asking GL again: the visible logical rectangle, the plot
// frame's origin a tenth of that rectangle in from its left and bottom,
// whether each axis is logarithmic, and the maps from data to logical units
// and between logical units and client pixels.
//
// A plain value: once made it reads no GL state, so it may be copied, kept
// and compared. The numbers are exactly those the layers have always
// derived from GetViewRectLP(), float rounding included.
#pragma once

#include <plotvane/foundation/ValueTypes.h>

#include <cmath>

namespace plotvane
{

class ChartFrame
{
public:
    // What a frame is made of, as the view reads it at one moment.
    struct Source
    {
        // The visible logical rectangle (GetViewRectLP).
        CRectF rcVisible;
        // The client rectangle's size in pixels.
        int nClientWidth = 0;
        int nClientHeight = 0;
        // The GL state the pixel maps go through, read once.
        double modelview[16] = {};
        double projection[16] = {};
        int viewport[4] = {};
        bool bLogX = false;
        bool bLogY = false;
        // CPlotvane_InputData's view scales: data times these is logical on
        // a linear axis.
        double dViewScaleX = 1.0;
        double dViewScaleY = 1.0;
    };

    ChartFrame() = default;
    explicit ChartFrame(const Source& src);

    // ---- the visible logical rectangle, edges widened to double
    const CRectF& VisibleRect() const { return m_src.rcVisible; }
    double Left() const { return m_src.rcVisible.Left(); }
    double Right() const { return m_src.rcVisible.Right(); }
    double Top() const { return m_src.rcVisible.Top(); }
    double Bottom() const { return m_src.rcVisible.Bottom(); }
    // W and H, the units of every text offset.
    double Width() const { return m_src.rcVisible.width; }
    double Height() const { return m_src.rcVisible.height; }
    CPointD TopRight() const { return CPointD(Right(), Top()); }

    // ---- the plot frame
    // Left + W/10 and bottom + H/10 with the tenth taken in float: where the
    // axes start, the grid and its texts stop and the curves are clipped.
    double OriginX() const { return m_dOriginX; }
    double OriginY() const { return m_dOriginY; }
    CPointD Origin() const { return CPointD(m_dOriginX, m_dOriginY); }
    // The same point with the tenth taken in double. The eye-jitter marks
    // have always started here; it can differ from Origin() by a float
    // rounding.
    CPointD OriginInDouble() const
    {
        return CPointD(Left() + Width() / 10, Bottom() + Height() / 10);
    }

    // ---- axes
    bool IsLogX() const { return m_src.bLogX; }
    bool IsLogY() const { return m_src.bLogY; }
    double ViewScaleX() const { return m_src.dViewScaleX; }
    double ViewScaleY() const { return m_src.dViewScaleY; }

    // A value on a logarithmic axis: log10 in single precision, with no view
    // scale.
    static double LogAxisValue(double v) { return double(log10f(float(v))); }
    // Data to logical units by this frame's axes.
    double DataToLogicalX(double x) const
    {
        return m_src.bLogX ? LogAxisValue(x) : x * m_src.dViewScaleX;
    }
    double DataToLogicalY(double y) const
    {
        return m_src.bLogY ? LogAxisValue(y) : y * m_src.dViewScaleY;
    }
    CPointD DataToLogical(double x, double y) const
    {
        return CPointD(DataToLogicalX(x), DataToLogicalY(y));
    }

    // ---- client pixels (Y down, from the client rectangle's top)
    int ClientWidth() const { return m_src.nClientWidth; }
    int ClientHeight() const { return m_src.nClientHeight; }
    // Logical units per pixel across and up: ticks and other marks of a
    // fixed screen size.
    double LogicalPerPixelX() const { return Width() / m_src.nClientWidth; }
    double LogicalPerPixelY() const { return Height() / m_src.nClientHeight; }
    // Unrounded, through the projection of the paint. PixelToLogical is
    // ClientPointToView in double: rounded to float the two agree.
    CPointD LogicalToPixel(double x, double y) const;
    CPointD PixelToLogical(double col, double row) const;

private:
    Source m_src;
    double m_dOriginX = 0.0;
    double m_dOriginY = 0.0;
};

} // namespace plotvane
