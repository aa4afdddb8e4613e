// Curves: every pair of consecutive samples of a drawn waveform becomes a
// line segment at every frame, with no decimation, so that the picture is
// exact at any zoom. A step backwards in X (the seam of a folded eye) is
// never drawn, and each segment is clipped against the plot frame's left
// and bottom edges; the right and top edges are the viewport's.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/foundation/Geometry.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>

#include <GL/gl.h>

// OpenGL 1.4, which libGL exports; gl.h declares only up to 1.3 unless the
// extension prototypes are asked for before its first inclusion.
extern "C" GLAPI void APIENTRY glMultiDrawArrays(GLenum mode, const GLint* first,
                                                 const GLsizei* count, GLsizei drawcount);

#include <cmath>
#include <vector>

using plotvane::SetGLColor;

namespace
{

void CrossEdge(double x1, double y1, double x2, double y2, const CMLine& edge, double& x, double& y)
{
    const CPointD p = CMLine(CPointD(x1, y1), CPointD(x2, y2)).GetIntersectionPtWith(edge);
    x = p.x;
    y = p.y;
}

// Cuts the segment at the plot frame's left edge L, then at its bottom edge
// B, moving an end along the segment's line. The second end is never left
// of L: callers pass x1 <= x2, and a segment wholly left of L is dropped.
// Answers false when nothing is left to draw.
bool ClipSegment(const plotvane::ChartFrame& f, double& x1, double& y1, double& x2, double& y2)
{
    const double L = f.OriginX();
    const double B = f.OriginY();
    if ((x1 < L && x2 < L) || (y1 < B && y2 < B))
        return false;
    if (x1 < L)
        CrossEdge(x1, y1, x2, y2, CMLine(CPointD(L, B), CPointD(L, f.Top())), x1, y1);
    // The bottom edge is horizontal whatever its second X; the view's width
    // serves.
    if (y1 < B)
        CrossEdge(x1, y1, x2, y2, CMLine(CPointD(L, B), CPointD(f.Width(), B)), x1, y1);
    if (y2 < B)
        CrossEdge(x1, y1, x2, y2, CMLine(CPointD(L, B), CPointD(f.Width(), B)), x2, y2);
    return true;
}

// Segments of one curve, handed to GL in large batches: the same vertices,
// pixels and selection hits as a glBegin/glEnd pair per segment, at a
// fraction of the calls. Segments that join end to start (the unclipped
// run of a curve) share their vertex in a line strip, which halves the
// vertices GL transforms; a strip rasterises as its separate segments do.
// Vertices are floats, as GL keeps them anyway.
class SegmentBatch
{
public:
    SegmentBatch()
    {
        m_vertices.reserve(kBatchFloats + 4);
        glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
        glEnableClientState(GL_VERTEX_ARRAY);
    }
    SegmentBatch(const SegmentBatch&) = delete;
    SegmentBatch& operator=(const SegmentBatch&) = delete;
    ~SegmentBatch()
    {
        Flush();
        glPopClientAttrib();
    }
    void Add(double x1, double y1, double x2, double y2)
    {
        const float fx1 = float(x1), fy1 = float(y1);
        const size_t n = m_vertices.size();
        bool bJoins = n != 0 && m_vertices[n - 2] == fx1 && m_vertices[n - 1] == fy1;
        if (n >= kBatchFloats)
        {
            // A strip cut here goes on in the next batch from the same
            // vertex.
            Flush();
            bJoins = false;
        }
        if (!bJoins)
        {
            m_first.push_back(GLint(m_vertices.size() / 2));
            m_count.push_back(1);
            m_vertices.push_back(fx1);
            m_vertices.push_back(fy1);
        }
        m_vertices.push_back(float(x2));
        m_vertices.push_back(float(y2));
        ++m_count.back();
    }

private:
    void Flush()
    {
        if (m_vertices.empty())
            return;
        glVertexPointer(2, GL_FLOAT, 0, m_vertices.data());
        glMultiDrawArrays(GL_LINE_STRIP, m_first.data(), m_count.data(), GLsizei(m_first.size()));
        m_vertices.clear();
        m_first.clear();
        m_count.clear();
        // A software renderer (llvmpipe) bins the segments it is given until
        // a flush; flushing each batch keeps that store small for millions
        // of segments (a 10^7-sample eye at 1600x1000 peaked at 820 MB
        // without, 480 MB with). Order and pixels do not change.
        glFlush();
    }

    static constexpr size_t kBatchFloats = 4 * 2048;
    std::vector<float> m_vertices;
    std::vector<GLint> m_first;
    std::vector<GLsizei> m_count;
};

} // namespace

CChartPointDArray* CGLChartView::BeginCurve(int index, const plotvane::ChartFrame& f)
{
    CPlotvane_InputData& data = m_pManager->m_InputData;
    // An index that names no data set draws nothing; the draw set may hold
    // stale indices after a set was deleted.
    if (index < 0 || (unsigned long long)index >= data.GetDataSetSize())
        return nullptr;
    CChartPointDArray* p = data.GetChartPointDArray(index);
    if (p == nullptr)
        return nullptr;
    // log10(0) has no place on a logarithmic or decibel axis: such a curve
    // is not drawn at all.
    if ((f.IsLogY() || m_bDecibelAxis) && p->IsExistZeroValueY())
        return nullptr;
    SetGLColor(p->m_Color);
    return p;
}

void CGLChartView::DrawGraphLine(int index)
{
    m_nDrawMaxPulsePeriod = 0;
    const plotvane::ChartFrame f = GetChartFrame();
    const CChartPointDArray* p = BeginCurve(index, f);
    if (p == nullptr)
        return;
    glLineWidth(GLfloat(p->m_bHighlight ? m_dPointSize : p->m_dLineWidth));

    const bool bClipNegativeX = p->m_bClipNegativeX != 0;
    // X is linear here whatever the frame says: DrawChart_Log draws the
    // logarithmic form.
    const double sx = f.ViewScaleX();
    const CChartPointD* const* pts = p->GetData();
    const INT_PTR n = p->GetSize();
    {
        SegmentBatch batch;
        for (INT_PTR i = 0; i + 1 < n; ++i)
        {
            const CChartPointD& a = *pts[i];
            const CChartPointD& b = *pts[i + 1];
            double x1 = a.X * sx;
            double x2 = b.X * sx;
            double y1 = f.DataToLogicalY(a.Y);
            double y2 = f.DataToLogicalY(b.Y);
            if (bClipNegativeX && x1 < 0.0)
            {
                if (x2 < 0.0)
                    continue;
                x1 = 0.0;
            }
            // Backward in X: the retrace of a folded or multi-period
            // waveform, never shown.
            if (x1 > x2)
                continue;
            if (ClipSegment(f, x1, y1, x2, y2))
                batch.Add(x1, y1, x2, y2);
        }
    }
    glLineWidth(1.0f);
}

// Unlike the linear form, the width is the view's and is left set.
void CGLChartView::DrawGraphLine_Log(int index)
{
    const plotvane::ChartFrame f = GetChartFrame();
    const CChartPointDArray* p = BeginCurve(index, f);
    if (p == nullptr)
        return;
    glLineWidth(GLfloat(p->m_bHighlight ? m_dPointSize : m_dLineWidth));

    const CPlotvane_InputData& data = m_pManager->m_InputData;
    const CChartPointD* const* pts = p->GetData();
    SegmentBatch batch;
    for (int i = 0; i + 1 < data.GetDataSize(index); ++i)
    {
        double xa = pts[i]->X;
        double ya = pts[i]->Y;
        const double xb = pts[i + 1]->X;
        const double yb = pts[i + 1]->Y;
        // A zero-frequency sample can't be shown: it moves along the segment
        // to 1 Hz.
        if (xa == 0.0 && xb > 1.0)
        {
            ya += (yb - ya) * (1.0 - xa) / (xb - xa);
            xa = 1.0;
        }
        double x1 = plotvane::ChartFrame::LogAxisValue(xa);
        double x2 = plotvane::ChartFrame::LogAxisValue(xb);
        double y1 = f.DataToLogicalY(ya);
        double y2 = f.DataToLogicalY(yb);
        if (x1 > x2)
            continue;
        if (ClipSegment(f, x1, y1, x2, y2))
            batch.Add(x1, y1, x2, y2);
    }
}

void CGLChartView::DrawLine(double x1, double y1, double x2, double y2)
{
    glBegin(GL_LINES);
    glVertex3d(x1, y1, 0.0);
    glVertex3d(x2, y2, 0.0);
    glEnd();
}

// For hosts: a free segment through the clipper, with no test of the
// direction in X.
void CGLChartView::DrawLineClipping(double x1, double y1, double x2, double y2)
{
    if (x1 <= 0.0)
    {
        if (x2 < 0.0)
            return;
        if (x1 < 0.0)
            x1 = 0.0;
    }
    if (ClipSegment(GetChartFrame(), x1, y1, x2, y2))
        DrawLine(x1, y1, x2, y2);
}

void CGLChartView::DrawLineData(double x1, double y1, double x2, double y2, double width,
                                DWORD color)
{
    glLineWidth(GLfloat(width));
    SetGLColor(color);
    DrawLine(x1, y1, x2, y2);
    glLineWidth(1.0f);
}
