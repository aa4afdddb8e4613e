// CArchive: a buffered, little-endian binary stream over a CFile, in load or
// store mode, with the MFC encodings of counts and strings.
#pragma once

#include <plotvane/foundation/MFCFile.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>

#include <vector>

class CArchive
{
public:
    enum Mode : UINT
    {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2
    };

    CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
    // Flushes a storing archive that was not closed; write errors are lost
    // here, so callers that care call Close.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_nMode & load) != 0; }
    BOOL IsStoring() const { return (m_nMode & load) == 0; }
    CFile* GetFile() const { return m_pFile; }
    void Close();
    void Abort();
    void Flush();

    // Raw bytes. Read answers how many arrived; it throws only on a wrong mode.
    UINT Read(void* lpBuf, UINT nMax);
    void Write(const void* lpBuf, UINT nMax);
    // Reads exactly nCount bytes or throws the end-of-file exception.
    void ReadExact(void* lpBuf, size_t nCount);

    void WriteCount(ULONGLONG dwCount);
    ULONGLONG ReadCount();

    // Throws the end-of-file exception when the stream's length is known and
    // fewer than nCount * nBytesEach bytes remain. Readers call it before they
    // allocate for a count taken from the stream.
    void EnsureAvailable(ULONGLONG nCount, ULONGLONG nBytesEach);

    CArchive& operator<<(BYTE v) { return WriteValue(v); }
    CArchive& operator<<(WORD v) { return WriteValue(v); }
    CArchive& operator<<(short v) { return WriteValue(v); }
    CArchive& operator<<(char v) { return WriteValue(v); }
    CArchive& operator<<(int v) { return WriteValue(v); }
    CArchive& operator<<(UINT v) { return WriteValue(v); }
    CArchive& operator<<(LONGLONG v) { return WriteValue(v); }
    CArchive& operator<<(ULONGLONG v) { return WriteValue(v); }
    CArchive& operator<<(float v) { return WriteValue(v); }
    CArchive& operator<<(double v) { return WriteValue(v); }
    CArchive& operator<<(const CString& s);

    CArchive& operator>>(BYTE& v) { return ReadValue(v); }
    CArchive& operator>>(WORD& v) { return ReadValue(v); }
    CArchive& operator>>(short& v) { return ReadValue(v); }
    CArchive& operator>>(char& v) { return ReadValue(v); }
    CArchive& operator>>(int& v) { return ReadValue(v); }
    CArchive& operator>>(UINT& v) { return ReadValue(v); }
    CArchive& operator>>(LONGLONG& v) { return ReadValue(v); }
    CArchive& operator>>(ULONGLONG& v) { return ReadValue(v); }
    CArchive& operator>>(float& v) { return ReadValue(v); }
    CArchive& operator>>(double& v) { return ReadValue(v); }
    CArchive& operator>>(CString& s);

    CString m_strFileName;

private:
    // x86-64 and aarch64 Linux are little-endian, so the in-memory form of a
    // value is its archive form.
    template <class T> CArchive& WriteValue(T v)
    {
        CheckStoring();
        if (m_pCur + sizeof v <= m_pEnd)
        {
            __builtin_memcpy(m_pCur, &v, sizeof v);
            m_pCur += sizeof v;
        }
        else
            Write(&v, sizeof v);
        return *this;
    }
    template <class T> CArchive& ReadValue(T& v)
    {
        CheckLoading();
        if (m_pCur + sizeof v <= m_pEnd)
        {
            __builtin_memcpy(&v, m_pCur, sizeof v);
            m_pCur += sizeof v;
        }
        else
            ReadExact(&v, sizeof v);
        return *this;
    }
    void CheckStoring() const;
    void CheckLoading() const;
    void FillBuffer();
    ULONGLONG ReadStringLength(bool& bWide);
    [[noreturn]] void ThrowEndOfFile() const;

    CFile* m_pFile;
    UINT m_nMode;
    std::vector<BYTE> m_ownBuffer;
    BYTE* m_pBufStart;
    size_t m_nBufSize;
    BYTE* m_pCur;
    BYTE* m_pEnd;
    bool m_bClosed = false;
};
