// The records drawn over the curves and placed with the mouse: texts, free
// lines, cursor lines and cursor boxes, each with its owning array. Positions
// are in view units.
#pragma once

#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>

class CChartTextData
{
public:
    CChartTextData() { Init(); }
    CChartTextData(const CChartTextData&) = default;
    CChartTextData& operator=(const CChartTextData&) = default;
    virtual ~CChartTextData() = default;
    virtual bool operator==(const CChartTextData& o) const;
    virtual bool operator!=(const CChartTextData& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    // Resets everything but the measured size, which placing sets.
    void Init();

    double m_dX;
    double m_dY;
    CString m_strText;
    int m_bVisible;
    COLORREF m_color;
    int m_nFontSize;
    double m_dHeight = 0.0;
    double m_dWidth = 0.0;

    static constexpr int m_nVersion = 2;
};

class CChartTextDataArray : public CExPtrArray<CChartTextData*, CChartTextData*>
{
public:
    CChartTextDataArray() = default;
    CChartTextDataArray(const CChartTextDataArray& o);
    CChartTextDataArray& operator=(const CChartTextDataArray& o);
    ~CChartTextDataArray() override { DeleteAll(); }
    bool operator==(const CChartTextDataArray& o) const;
    bool operator!=(const CChartTextDataArray& o) const { return !(*this == o); }
    void Serialize(CArchive& ar) override;
    void Init() { DeleteAll(); }
};

class CChartLineData
{
public:
    CChartLineData() { Init(); }
    CChartLineData(const CChartLineData&) = default;
    CChartLineData& operator=(const CChartLineData&) = default;
    virtual ~CChartLineData() = default;
    virtual bool operator==(const CChartLineData& o) const;
    virtual bool operator!=(const CChartLineData& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    void Init();

    double m_dX1;
    double m_dY1;
    double m_dX2;
    double m_dY2;
    double m_dWidth;
    int m_nStyle;
    COLORREF m_color;

    static constexpr int m_nVersion = 1;
};

class CChartLineDataArray : public CExPtrArray<CChartLineData*, CChartLineData*>
{
public:
    CChartLineDataArray() = default;
    CChartLineDataArray(const CChartLineDataArray& o);
    CChartLineDataArray& operator=(const CChartLineDataArray& o);
    ~CChartLineDataArray() override { DeleteAll(); }
    bool operator==(const CChartLineDataArray& o) const;
    bool operator!=(const CChartLineDataArray& o) const { return !(*this == o); }
    void Serialize(CArchive& ar) override;
    void Init() { DeleteAll(); }
};

class CChartClippingLine
{
public:
    CChartClippingLine();
    // Shares the three owned texts with the source: both records then delete
    // them, so only one of the two may be destroyed with them in place.
    CChartClippingLine(const CChartClippingLine& o);
    // Copies the texts' contents, but neither the crossing labels nor
    // m_bDistanceEnd.
    CChartClippingLine& operator=(const CChartClippingLine& o);
    virtual ~CChartClippingLine();
    virtual bool operator==(const CChartClippingLine& o) const;
    virtual bool operator!=(const CChartClippingLine& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    // Restores the defaults and creates the owned texts anew; for
    // construction only, as the old texts are not released.
    void Init();
    // Appends the crossings of this line with the drawn curves of the store
    // (CPlotvane_InputData::m_pInputData); the array is not cleared first.
    void CalcClippingValueArray();

    CString m_strName;
    int m_bVertical;
    int m_bVisible;
    double m_dPosition;
    COLORREF m_color;
    CArrayD m_arrClippingValue;
    CChartTextData* m_pValueText = nullptr;
    CChartTextDataArray* m_pClippingTextArray = nullptr;
    int m_bDistanceEnd;
    CPointD m_ptDistanceStart;
    CPointD m_ptDistanceEnd;
    CChartTextData* m_pDistanceText = nullptr;

    static constexpr int m_nVersion = 3;

private:
    void SerializeVersion2Fields(CArchive& ar);
};

class CChartClippingLineArray : public CExPtrArray<CChartClippingLine*, CChartClippingLine*>
{
public:
    CChartClippingLineArray() = default;
    CChartClippingLineArray(const CChartClippingLineArray& o);
    // New records made with the line's copy constructor: they share their
    // texts with the source's records.
    CChartClippingLineArray& operator=(const CChartClippingLineArray& o);
    ~CChartClippingLineArray() override { DeleteAll(); }
    bool operator==(const CChartClippingLineArray& o) const;
    bool operator!=(const CChartClippingLineArray& o) const { return !(*this == o); }
    void Serialize(CArchive& ar) override;
    void Init() { DeleteAll(); }
    // Nothing for i below 0 or above the count; i equal to the count reaches
    // a null element.
    void CalcClippingValueArray(int i);
};

class CChartClippingBox
{
public:
    CChartClippingBox();
    // Shares the two texts with the source, as the line's copy does.
    CChartClippingBox(const CChartClippingBox& o);
    // Copies every member, the texts by content.
    CChartClippingBox& operator=(const CChartClippingBox& o);
    virtual ~CChartClippingBox();
    virtual bool operator==(const CChartClippingBox& o) const;
    virtual bool operator!=(const CChartClippingBox& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    void Init();

    CString m_strName;
    int m_bVertical;
    int m_bVisible;
    COLORREF m_color;
    double m_dX1;
    double m_dY1;
    double m_dX2;
    double m_dY2;
    double m_dWidth;
    double m_dHeight;
    CChartTextData* m_pWidthText = nullptr;
    CChartTextData* m_pHeightText = nullptr;
};

class CChartClippingBoxArray : public CExPtrArray<CChartClippingBox*, CChartClippingBox*>
{
public:
    CChartClippingBoxArray() = default;
    CChartClippingBoxArray(const CChartClippingBoxArray& o);
    // New records made with the box's copy constructor: texts are shared.
    CChartClippingBoxArray& operator=(const CChartClippingBoxArray& o);
    ~CChartClippingBoxArray() override { DeleteAll(); }
    bool operator==(const CChartClippingBoxArray& o) const;
    bool operator!=(const CChartClippingBoxArray& o) const { return !(*this == o); }
    void Serialize(CArchive& ar) override;
    void Init() { DeleteAll(); }
};
