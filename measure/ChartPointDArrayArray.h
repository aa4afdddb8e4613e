// CChartPointDArrayArray: a list of waveforms. Usually it owns them (the data
// sets of a chart); role queries fill lists of borrowed waveforms and the eye
// routines lists of owned arrays of borrowed points, which their makers empty
// with SetSize(0) or DataRemoveAll.
#pragma once

#include <plotvane/measure/ChartPointDArray.h>

#include <string>

class CChartPointDArrayArray : public CExPtrArray<CChartPointDArray*, CChartPointDArray*>
{
public:
    CChartPointDArrayArray() = default;
    CChartPointDArrayArray(const CChartPointDArrayArray& other);
    CChartPointDArrayArray& operator=(const CChartPointDArrayArray& other);
    // Deletes every waveform it holds.
    ~CChartPointDArrayArray() override;

    const char* GetRuntimeClassName() const override { return "CChartPointDArrayArray"; }
    void Serialize(CArchive& ar) override;
    virtual bool operator==(const CChartPointDArrayArray& other) const;
    virtual bool operator!=(const CChartPointDArrayArray& other) const { return !(*this == other); }

    void DataRemoveAll();
    CChartPointDArray* FindByNetName(const CString& name) const;
    void SetHighlight(int n);
    void Shift(double dx, double dy, int bVisibleOnly);
    void ShiftEyeData(double dShift, int bVisibleOnly);

    void GetDQDriverDatas(CChartPointDArrayArray* pOut) const;
    void GetDQReceiverDatas(CChartPointDArrayArray* pOut) const;
    void GetDQSDriverDatas(CChartPointDArrayArray* pOut) const;
    void GetDQSReceiverDatas(CChartPointDArrayArray* pOut) const;

    double GetMaxX(int bVisibleOnly) const;
    double GetMinX(int bVisibleOnly) const;
    double GetMaxY(int bVisibleOnly) const;
    double GetMinY(int bVisibleOnly) const;
    double GetMaxPeriod(int bVisibleOnly) const;

    void AddAllDataSetSelectRowByIndex(int nRow);
    void AddAllDataSetSelectRowByValue(double x, double y);
    void AddAllDataSetSelectRowByValueX(double x);
    void AddAllDataSetSelectRowByValueY(double y);
    void AddSelectRowByIndex(int nSet, int nRow);
    void AddSelectRowByIndex(int nSet, double x, double y);
    void AddSelectRowByIndexAndX(int nSet, double x);
    void AddSelectRowByIndexAndY(int nSet, double y);
    void AddSelectRowByValue(CString name, int nRow);
    void AddSelectRowByValue(CString name, double x, double y);
    void AddSelectRowByValueX(CString name, double x);
    void AddSelectRowByValueY(CString name, double y);
    void SetAllDataSetSelectRowByIndex(int nRow);
    void SetAllDataSetSelectRowByValue(double x, double y);
    void SetAllDataSetSelectRowByValueX(double x);
    void SetAllDataSetSelectRowByValueY(double y);
    void SetSelectRowByIndex(int nSet, int nRow);
    void SetSelectRowByIndex(int nSet, double x, double y);
    void SetSelectRowByIndexAndX(int nSet, double x);
    void SetSelectRowByIndexAndY(int nSet, double y);
    void SetSelectRowByValue(CString name, int nRow);
    void SetSelectRowByValue(CString name, double x, double y);
    void SetSelectRowByValueX(CString name, double x);
    void SetSelectRowByValueY(CString name, double y);
    void RemoveSelectRow();
    void GetSelectRowDataByIndex(int nSet, CArrayD* xs, CArrayD* ys) const;
    void GetSelectRowDataByValue(CString name, CArrayD* xs, CArrayD* ys) const;
    void GetSortByXValueArray(int nSet, CArrayD& xs, CArrayD& ys) const;

    void SaveToASCIIFile(const CString& path) const;
    void ShiftChartDataOnXAxisToLeftSide(double dShift, double dPeriod);

    // ---- margins (TimingMargins.cpp)
    // 1 when some receiving data eye (m_nDataType not 0, m_nPinRole 2) finds
    // no setup margin (-1.0) against the strobe pair, else 0.
    int IsCheckSetupHoldMarginValue(CChartPointDArray* pDQS, CChartPointDArray* pDQSBar,
                                    int bVrefFromData, int bNoMask) const;

    static constexpr int nVersion = 1;
};
