// The crossings of cursor lines with the drawn curves, asked of the store
// that the view last pointed CPlotvane_InputData::m_pInputData at.
#include <plotvane/document/ChartMarkers.h>

#include <plotvane/document/Plotvane_InputData.h>

void CChartClippingLine::CalcClippingValueArray()
{
    CPlotvane_InputData* pData = CPlotvane_InputData::m_pInputData;
    if (!pData)
        return;
    // The draw set is walked in the order the sets were added to it.
    const CNSet& drawSet = pData->m_DrawSet;
    const INT_PTR nCount = drawSet.GetSize();
    for (INT_PTR k = 0; k < nCount; ++k)
    {
        const int nSet = drawSet.GetData()[k];
        if (!m_bVertical)
        {
            CArrayD xs;
            if (pData->GetXInterpolationValue(nSet, m_dPosition, xs))
                m_arrClippingValue.Append(xs);
        }
        else
        {
            double y = 0.0;
            if (pData->GetYInterpolationValue(nSet, m_dPosition, y))
                m_arrClippingValue.Add(y);
        }
    }
}

// The bound lets i equal the count through to a null element, as callers
// have always been allowed to.
void CChartClippingLineArray::CalcClippingValueArray(int i)
{
    if (i < 0 || i > GetSize())
        return;
    CChartClippingLine* pLine = GetAt(i);
    if (!pLine)
        AfxThrowInvalidArgException();
    pLine->CalcClippingValueArray();
}
