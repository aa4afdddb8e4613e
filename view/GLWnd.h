// CGLWnd: a child window that owns one OpenGL rendering context and a view
// onto a two-dimensional logical plane. It picks the pixel format, maps
// between client pixels and the plane, zooms about the view's centre, lets
// the right mouse button drag the view, and leaves the drawing to
// RenderScene.
#pragma once

#include <plotvane/foundation/MFCArray.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>
#include <plotvane/platform/Wnd.h>

class CGLWnd : public CWnd
{
public:
    CGLWnd();
    ~CGLWnd() override;

    HGLRC m_hRC;
    // Lives as long as the GL context; its handle serves every context call.
    CClientDC* m_pDC;
    // Names hit by the last selection pass.
    CDWordArray m_arrSelectNames;
    // A decoded selection buffer, filled only by ReadSelectionBuffer.
    CDWordArrayArray m_arrSelectHits;
    // Right-button dragging of the view is allowed.
    int m_bMouseDrag;
    CPoint m_ptDragStart;
    CPoint m_ptDragEnd;
    // The logical rectangle that fills the window at zoom exponent 0.
    CRectF m_rcViewArea;
    float m_fNear;
    float m_fFar;
    // The scene is scaled by 1.2 raised to this.
    int m_nZoomExponent;
    // 0: a drag draws a rubber line and the scene follows the hand; nonzero:
    // no rubber line, and the view rectangle follows the hand.
    int m_bDragFollowsMouse;
    int m_bReverseWheel;

    virtual void PanByDrag();
    virtual HGLRC GetRenderContext();
    virtual void FitCurViewAreaWithWindow();
    virtual void ReadSelectionBuffer(const DWORD* buffer, unsigned hits, CDWordArrayArray& out);
    virtual void RenderScene();
    virtual CRectF ClientRectToView(const CRect& rc);
    virtual CPointF ClientPointToView(const CPoint& pt);
    virtual CRect ViewRectToClient(const CRectF& rc);
    virtual CPoint ViewPointToClient(const CPointF& pt);
    virtual bool SetupPixelFormat();
    virtual bool InitOpenGL();
    virtual bool ReleaseOpenGL();

    void MakeCurrent();
    // The logical area actually visible, zoom included.
    CRectF GetViewRectLP();
    void SetViewProjection(int width, int height);
    void ApplyViewZoom();
    void OffsetViewArea(float dx, float dy);
    void DrawHorizontalViewLine(double y, DWORD color);
    void DrawVerticalViewLine(double x, DWORD color);
    int ChooseBestPixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* wanted, DWORD forbiddenFlags);

    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    int OnCreate(LPCREATESTRUCT lpCreateStruct) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* pDC) override;
    void OnDestroy() override;
    void OnSize(UINT nType, int cx, int cy) override;
    BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) override;
    void OnRButtonDown(UINT nFlags, CPoint point) override;
    void OnRButtonUp(UINT nFlags, CPoint point) override;
    void OnMouseMove(UINT nFlags, CPoint point) override;

protected:
    // Drawing straight into the shown frame with XOR, white, depth test off:
    // drawing the same thing twice erases it. Between the two calls the
    // modelview matrix is pushed.
    void BeginFrontXor();
    void EndFrontXor();

private:
    void DrawRubberLine();
};
