// CChartPointDArray: the waveform. An ordered list of owned samples with the
// attributes a chart and the measurements need: names, colour, role in a
// memory interface, eye parameters and the last measured margins.
//
// The operations are spread over several sources by family:
//   ChartPointDArray.cpp  plain operations, extremes, select rows, archive
//   CrossingSearch.cpp    crossing and threshold searches
//   EyeFolding.cpp        eye lines, periods, rotation, eye parameters
//   AreaMeasures.cpp      overshoot and undershoot areas
//   TimingMargins.cpp     setup/hold and read-cycle margins
#pragma once

#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>
#include <plotvane/measure/ChartPointD.h>

class CChartPointDArrayArray;

class CChartPointDArray : public CExPtrArray<CChartPointD*, CChartPointD*>
{
public:
    CChartPointDArray();
    CChartPointDArray(const CChartPointDArray& other);
    CChartPointDArray& operator=(const CChartPointDArray& other);
    // Deletes the points it holds; a borrowed array is emptied with SetSize(0)
    // before it is destroyed.
    ~CChartPointDArray() override;

    const char* GetRuntimeClassName() const override { return "CChartPointDArray"; }
    void Serialize(CArchive& ar) override;
    // Same object, or same size and every point pair equal; attributes are
    // not compared.
    virtual bool operator==(const CChartPointDArray& other) const;
    virtual bool operator!=(const CChartPointDArray& other) const { return !(*this == other); }

    // ---- plain operations (ChartPointDArray.cpp)
    int GetDataType() const { return m_nDataType; }
    void SetDataType(int n) { m_nDataType = n; }
    int GetCurve() const { return m_nCurve; }
    double GetPointX(INT_PTR i) const { return GetData()[i]->X; }
    double GetPointY(INT_PTR i) const { return GetData()[i]->Y; }
    void Shift(double dx, double dy);
    void Multiply(double f);
    void Modify(INT_PTR i, double x, double y);
    void Exchange(INT_PTR i, INT_PTR j);
    double GetMinX() const;
    double GetMaxX() const;
    double GetMinY() const;
    double GetMaxY() const;
    void GetMaxpoint(int& nIndex, double& dY) const;
    int IsExistZeroValueY() const;
    int IsXValueExistence(double x) const;
    int GetPulseDataType(double dMax, double dMin) const;
    int GetPulseDataType2(double dMax, double dMin) const;
    CString GetRefNameFromNodeName() const;
    void RemoveLowerDataByValueX(double x);
    void RemoveLowerDataByValueXAndReplaceWithIntegratedData(double x);
    void GetSortByXValueArray(CArrayD& xs, CArrayD& ys) const;

    // ---- select rows (ChartPointDArray.cpp)
    void AddSelectRow(int i);
    void SetSelectRow(int i);
    void AddSelectRowByValue(double x, double y);
    void AddSelectRowByValueX(double x);
    void AddSelectRowByValueY(double y);
    void SetSelectRowByValue(double x, double y);
    void SetSelectRowByValueX(double x);
    void SetSelectRowByValueY(double y);
    void GetSelectRow(CNSet* p) const;
    void GetSelectRowData(CArrayD* xs, CArrayD* ys) const;
    void RemoveSelectRow();
    void RemoveAtSelectRow(int k);

    // ---- crossing and threshold searches (CrossingSearch.cpp)
    int GetCrossMinMaxXValue(double dY, double dXMin, double dXMax, double dScaleX, double dScaleY,
                             double& dMinX, double& dMaxX) const;
    int GetCrossMinMaxXValueByVRefTol(double dVRef, double dTol, double dXMin, double dXMax,
                                      double dScaleX, double dScaleY, double& dMinX,
                                      double& dMaxX) const;
    int GetCrossMinMaxYValue(double dX, double dYMin, double dYMax, double dScaleX, double dScaleY,
                             double& dMinY, double& dMaxY) const;
    int GetDataCrossMinMaxXValue(const CChartPointDArray* pOther, double dXMin, double dXMax,
                                 double dScaleX, double dScaleY, double& dMinX,
                                 double& dMaxX) const;
    int GetDataCrossMinMaxXValue(const CChartPointDArray* pOther, double dXMin, double dXMax,
                                 double dScaleX, double dScaleY, double& dMinX, double& dMaxX,
                                 double& dYAtMinX, double& dYAtMaxX) const;
    int GetDataCrossMinMaxXValueByPointArray(const CChartPointDArray* pOther, double dY,
                                             double dTol, double dXMin, double dXMax,
                                             double dScaleX, double dScaleY, double& dMinX,
                                             double& dMaxX) const;
    int GetDataCrossMinMaxXValueByPointArray(const CChartPointDArray* pOther, double dY,
                                             double dTol, double dXMin, double dXMax,
                                             double dScaleX, double dScaleY, double& dMinX,
                                             double& dMaxX, double& dYAtMinX, double& dYAtMaxX,
                                             int bOppositeSlope) const;
    int GetDataCrossMinMaxYValueByPointArray(const CChartPointDArray* pOther, double dYMin,
                                             double dYMax, double dScaleX, double dScaleY,
                                             double& dMinY, double& dMaxY) const;
    int GetRectAreaCrossMinXValue(double dLeft, double dTop, double dRight, double dBottom,
                                  double dXMin, double dXMax, double dScaleX, double dScaleY,
                                  double& dMinX, double& dMaxX) const;
    void GetPosiNegaPeakInCertainArea(double dScaleX, double dScaleY, double dLeft, double dTop,
                                      double dRight, double dBottom, CPointD& ptPositive,
                                      CPointD& ptNegative, int& bPositive, int& bNegative) const;
    void GetXValArrayMeetYThreshold(double dScaleX, double dScaleY, double dY, double dXMin,
                                    double dXMax, CArrayD& arrRising, CArrayD& arrFalling) const;
    void GetXValArrayMeetYThreshold(double dScaleX, double dScaleY, double dY, double dXMin,
                                    double dXMax, CArrayD& arrX, int bFalling) const;

    // ---- eye folding (EyeFolding.cpp)
    void SetEyeInformation(double dVref, double dSetupTime, double dHoldTime, double dHoldLevel,
                           double dSetupLevel, int nOneLevel);
    void SetEyeReadCycleTimeInfo(int nReadCycle, double d1, double d2);
    void ExtractEyeLinePointArray(CChartPointDArrayArray* pLines) const;
    void CollectWaveDataPerPeriod(CChartPointDArrayArray* pPeriods) const;
    void SerializeWaveDataFromEachPeriod(CChartPointDArrayArray* pPeriods, double dPeriod);
    void ShiftEyeData(double dShift);
    int GetMinMaxCrossPoint(double dY, double dTol, double& dMinX1, double& dYAtMinX1,
                            double& dMaxX1, double& dYAtMaxX1, double& dMinX2, double& dYAtMinX2,
                            double& dMaxX2, double& dYAtMaxX2) const;

    // ---- area measures (AreaMeasures.cpp)
    // Largest area enclosed above or below dLevel between a crossing and the
    // next crossing the other way. The plain forms leave dArea in units of
    // dScaleX * dScaleY times the data's; the forms over eye lines divide by
    // dScaleY. pPoints receives the outline of the largest area.
    void GetMaxAreaAboveYValue(double dScaleX, double dScaleY, double dXMin, double dXMax,
                               double dLevel, double& dArea) const;
    void GetMaxAreaAboveYValueAndAllPointsInArea(double dScaleX, double dScaleY, double dXMin,
                                                 double dXMax, double dLevel, double& dArea,
                                                 CChartPointDArray* pPoints) const;
    void GetMaxAreaAboveYValueWithExtractEyeLinePoints(double dScaleX, double dScaleY, double dXMin,
                                                       double dXMax, double dLevel,
                                                       double& dArea) const;
    void GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(
        double dScaleX, double dScaleY, double dXMin, double dXMax, double dLevel, double& dArea,
        CChartPointDArray* pPoints) const;
    void GetMaxAreaBelowYValue(double dScaleX, double dScaleY, double dXMin, double dXMax,
                               double dLevel, double& dArea) const;
    void GetMaxAreaBelowYValueAndAllPointsInArea(double dScaleX, double dScaleY, double dXMin,
                                                 double dXMax, double dLevel, double& dArea,
                                                 CChartPointDArray* pPoints) const;
    void GetMaxAreaBelowYValueWithExtractEyeLinePoints(double dScaleX, double dScaleY, double dXMin,
                                                       double dXMax, double dLevel,
                                                       double& dArea) const;
    void GetMaxAreaBelowYValueAndAllPointsInAreaWithExtractEyeLinePoints(
        double dScaleX, double dScaleY, double dXMin, double dXMax, double dLevel, double& dArea,
        CChartPointDArray* pPoints) const;

    // ---- timing margins (TimingMargins.cpp)
    // Setup and hold margins of this data eye against its strobe pDQS (and
    // pDQSBar for a differential strobe): margins in seconds, heights and
    // the reference in mV, window and spread in ps. The outputs are written
    // only where a result exists: the caller seeds them.
    void CheckSetupHoldMargin(CChartPointDArray* pDQS, CChartPointDArray* pDQSBar,
                              double& dSetupMargin, double& dHoldMargin, double& dSetupHeight,
                              double& dHoldHeight, double& dVrefMV, double& dWindowPS,
                              double& dStrobeSpreadPS, double dOffset, int bVrefFromData,
                              int bNoMask) const;
    // tQH and tDQSQ of a read-cycle eye, in seconds; both always written.
    void CheckReadCycleTimeMargin(CChartPointDArray* pDQS, CChartPointDArray* pDQSBar,
                                  double& dTQH, double& dTDQSQ, double dOffset,
                                  int bVrefFromData) const;

    static constexpr int nVersion = 3;

    CString m_strName;
    CColor m_Color;
    int m_bVisible = 1;
    int m_nCurve = 0;
    CNSet m_SelectRow;
    double m_dLineWidth = 1.0;
    int m_bHighlight = 0;
    int m_nDataType = -1;
    int m_nStrobeWindowMode = -1;
    int m_bClipNegativeX = 0;
    int m_nReserved2 = 0;
    double m_dEyeVref = 0.0;
    double m_dEyeSetupTime = 0.0;
    double m_dEyeHoldTime = 0.0;
    double m_dEyeHoldLevel = 0.0;
    double m_dEyeSetupLevel = 0.0;
    int m_nEyeOneLevel = 0;
    CColor m_ColorEye1 = CColor(0xED92A2);
    CColor m_ColorEye2 = CColor(0xEBD294);
    CColor m_ColorEye3 = CColor(0xFCCBF4);
    CString m_strNetName;
    int m_nPinRole = -1;
    double m_dLevelLow = 0.0;
    double m_dLevelHigh = 0.0;
    double m_dPeriod = 0.0;
    int m_nStrobePhase = -1;
    double m_dSetupMargin = 0.0;
    double m_dHoldMargin = 0.0;
    int m_nReadCycle = 0;
    double m_dReadCycleTime1 = 0.0;
    double m_dReadCycleTime2 = 0.0;
    int m_nFoldMode = 0;
    double m_dVcent = 0.0;
    int m_nTimingMode = -1;

private:
    // Copies every attribute field of other, not the points.
    void CopyAttributes(const CChartPointDArray& other);
};
