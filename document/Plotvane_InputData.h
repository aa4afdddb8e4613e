// The data sets of one chart, the edit set and the draw set, the extents of
// the drawn data in view units, and the process-wide view scale that turns
// data units into the view units handed to OpenGL.
#pragma once

#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>
#include <plotvane/measure/ChartPointDArrayArray.h>

class CPlotvane_Attribute;
class CPlotvane_Dlg;
class CPlotvane_InputData_Dlg;
class CPlotvane_Manager;
class CTargetImpWithinFreqRangeArray;

class CPlotvane_InputData
{
public:
    // Makes this store the one that cursor lines ask (m_pInputData).
    CPlotvane_InputData();
    CPlotvane_InputData(const CPlotvane_InputData&) = delete;
    // Copies the sets, the edit and draw sets, the extents and the four
    // state ints; back-pointers, limits and the two host flags stay.
    CPlotvane_InputData& operator=(const CPlotvane_InputData& o);
    // Clears m_pInputData whichever store it names, deletes the sets and
    // the limits.
    virtual ~CPlotvane_InputData();
    virtual bool operator==(const CPlotvane_InputData& o) const;
    virtual bool operator!=(const CPlotvane_InputData& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    // ---- wiring
    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }
    void SetCPlotvaneDlg(CPlotvane_Dlg* p) { m_pChartDlg = p; }
    void SetCPlotvaneInputData_Dlg(CPlotvane_InputData_Dlg* p) { m_pInputDataDlg = p; }
    void SetChartMgr(CPlotvane_Manager* p) { m_pChartMgr = p; }
    static void SetViewScaleX(double d) { m_dViewScaleX = d; }
    static void SetViewScaleY(double d) { m_dViewScaleY = d; }

    // ---- sets
    int AddNewDataSet();
    unsigned long long AddNewDataSet(int n);
    // Later sets move down; the draw set keeps its old indices.
    void DeleteDataSet(int i);
    unsigned long long GetDataSetSize() const
    {
        return (unsigned long long)m_arrChartData.GetSize();
    }
    CChartPointDArray* GetChartPointDArray(int i) const { return m_arrChartData.GetAt(i); }
    int GetDataSize(int i) const;
    int GetArrayCount(int i) const { return GetDataSize(i); }
    int GetCurrentEditSet() const { return m_nCurrentEditSet; }
    void SetCurrentEditSet(int i) { m_nCurrentEditSet = i; }
    CString GetCurrentSetName();
    void SetCurrentEditSetName(CString str);
    void SetGraphColor(CColor color);
    void SetLineWidth(double d);
    void SetDrawCurveGraph(int n);
    void SetTargetImpedanceData(CTargetImpWithinFreqRangeArray* p);

    int GetSelectRow() const { return m_nSelectRow; }
    void SetSelectRow(int n) { m_nSelectRow = n; }
    int GetSortStateX() const { return m_nSortStateX; }
    void SetSortStateX(int n) { m_nSortStateX = n; }
    int GetSortStateY() const { return m_nSortStateY; }
    void SetSortStateY(int n) { m_nSortStateY = n; }

    // ---- draw set
    void AddDrawDataSetIndex(int i) { m_DrawSet.Add(i); }
    void RemoveDrawDataSetByValue(int v);
    void RemoveAllDrawDataSetIndex() { m_DrawSet.RemoveAll(); }
    void SelectAllDrawDataSet();
    int GetDrawDataSetCount() const { return int(m_DrawSet.GetSize()); }
    // Appends; the caller's array is not cleared.
    void GetDrawlDataSetIndexArray(CArrayN& arr) const;

    // ---- points of the edit set
    void AddData(double x, double y);
    // n points into the edit set, with the same result as n calls of
    // AddData(x, y) but the axis exponents worked out once for the block.
    void AddDataBlock(const double* xs, const double* ys, size_t n);
    // One point per set; the arrays must have one entry per set.
    int AddData(double x, CArrayD* ys);
    int AddData(CArrayD* xs, double y);
    int AddData(CArrayD* xs, CArrayD* ys);
    void InsertData(int i, double x, double y);
    void ModifyData(int i, double x, double y);
    void DeleteData(int i);
    void ClearAllData();
    void MulitplyDataSet(int k);
    double GetDataX(int i);
    double GetDataY(int i);
    void SortArrayX();
    void SortArrayY();

    // ---- extents and queries
    void FindMaxAndMin();
    void FindMaxAndMin_Log();
    void GetMaxAndMin();
    void CalcMaxAndMin();
    void AdjustMaxAndMin();
    int IsEnableDraw();
    int GetYInterpolationValue(int nSet, double x, double& y);
    int GetYInterpolationValue_Log(int nSet, double x, double& y);
    int GetXInterpolationValue(int nSet, double y, CArrayD& xs);
    int GetXInterpolationValue_Log(int nSet, double y, CArrayD& xs);
    void GetMaxXValueUnderSetValue(int nSet, double v, double& x, double& y);
    void GetMaxXValueUnderSetValue_Log(int nSet, double v, double& x, double& y);
    void GetMinXValueOverSetValue(int nSet, double v, double& x, double& y);
    void GetMinXValueOverSetValue_Log(int nSet, double v, double& x, double& y);
    void ShiftChartDataOnXAxisToLeftSideOnly(double dShift, double dPeriod);

    static double m_dViewScaleX;
    static double m_dViewScaleY;
    static CPlotvane_InputData* m_pInputData;

    CChartPointDArrayArray m_arrChartData;
    CTargetImpWithinFreqRangeArray* m_pTargetImpArray = nullptr;
    CPlotvane_Attribute* m_pAttribute = nullptr;
    CPlotvane_Dlg* m_pChartDlg = nullptr;
    CPlotvane_InputData_Dlg* m_pInputDataDlg = nullptr;
    CPlotvane_Manager* m_pChartMgr = nullptr;
    int m_nCurrentEditSet = 0;
    CNSet m_DrawSet;
    // Valid after FindMaxAndMin or a load; zero until then.
    double m_dMaxX = 0.0;
    double m_dMinX = 0.0;
    double m_dMaxY = 0.0;
    double m_dMinY = 0.0;
    int m_nSelectRow = 0;
    int m_nSortStateX = 0;
    int m_nSortStateY = 0;
    int m_nInputState = 0;
    int m_bIncludeUndrawnSets = 0;
    int m_bFitMarginTight = 1;

    static constexpr int m_nVersion = 1;

private:
    // The edit set; a bad index raises the invalid-argument exception.
    CChartPointDArray& EditSet();
    bool IsMagnitudeLogAxis() const;
    int IsFrequencyLogAxis() const;
    void StoreViewArea(const CRectF& rc);
};
