// The user's appearance settings shared by all charts: line widths, font
// sizes, grid choice and colour sets. They live in "Chart.uis" in the data
// directory, not in a chart's archive.
#pragma once

#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCArray.h>
#include <plotvane/foundation/ValueArrays.h>

class CGLPlotvane_Environment
{
public:
    CGLPlotvane_Environment();
    // Starts from the presets, then takes the source's sets in their place.
    CGLPlotvane_Environment(const CGLPlotvane_Environment& o);
    CGLPlotvane_Environment& operator=(const CGLPlotvane_Environment& o);
    virtual ~CGLPlotvane_Environment();
    virtual void Serialize(CArchive& ar);

    bool operator==(const CGLPlotvane_Environment& o) const;
    // Compares addresses, not contents: distinct objects always differ.
    bool operator!=(const CGLPlotvane_Environment& o) const;

    // Sets the defaults and appends the two presets without clearing the
    // sets already held.
    void Init();

    int AddColorSet(CDWordArray* pSet);
    int DeleteColorSet(int i);
    void SetColorSet(CDWordArray* pSet, int i);
    CDWordArray* GetColorSet();
    int GetColorSetCount() const { return int(m_arrColorSet.GetSize()); }
    unsigned long GetBackgroundColor();
    unsigned long GetLabelColor();

    // 0 when the file cannot be opened; stream faults raise archive
    // exceptions.
    int LoadEnvironmentFIle();
    // Replaces "Chart.uis" whole or not at all; 0 when it cannot be written.
    int SaveEnvironmentFIle();

    int GetGridLine() const { return m_nGridLine; }
    void SetGridLine(int n) { m_nGridLine = n; }
    int GetLineWidth() const { return m_nLineWidth; }
    void SetLineWidth(int n) { m_nLineWidth = n; }
    int GetHighlightedLineWidth() const { return m_nHighlightedLineWidth; }
    void SetHighlightedLineWidth(int n) { m_nHighlightedLineWidth = n; }
    int GetFontSizeLabel() const { return m_nFontSizeLabel; }
    void SetFontSizeLabel(int n) { m_nFontSizeLabel = n; }
    int GetFontSizeValue() const { return m_nFontSizeValue; }
    void SetFontSizeValue(int n) { m_nFontSizeValue = n; }
    int GetFontSizeMeasure() const { return m_nFontSizeMeasure; }
    void SetFontSizeMeasure(int n) { m_nFontSizeMeasure = n; }
    int GetCurColorIndex() const { return m_nCurColorIndex; }
    void SetCurColorIndex(int n) { m_nCurColorIndex = n; }

    int m_nGridLine;
    int m_nLineWidth;
    int m_nHighlightedLineWidth;
    int m_nFontSizeLabel;
    int m_nFontSizeValue;
    int m_nFontSizeMeasure;
    int m_nCurColorIndex;
    CDWordArrayArray m_arrColorSet;

    static constexpr int nVersion = 3;
};

namespace plotvane
{
// "Chart.uis" in the data directory.
CString EnvironmentFilePath();
} // namespace plotvane
