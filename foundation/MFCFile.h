// CFile over a POSIX descriptor and CMemFile over a growable block, the two
// streams a CArchive runs on.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>

class CFileException;

class CFile
{
public:
    enum OpenFlags : UINT
    {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition
    {
        begin = 0,
        current = 1,
        end = 2
    };

    CFile() = default;
    // Opens or throws CFileException.
    CFile(const char* pszFileName, UINT nOpenFlags);
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    virtual BOOL Open(const char* pszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
    virtual void Close();
    virtual void Abort();
    virtual UINT Read(void* lpBuf, UINT nCount);
    virtual void Write(const void* lpBuf, UINT nCount);
    virtual void Flush() {}
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    virtual ULONGLONG GetLength() const;
    virtual ULONGLONG GetPosition() const;
    // Whether GetLength is the real end of the data (a regular file or memory,
    // not a pipe); readers use it to refuse counts the stream cannot hold.
    virtual bool HasKnownLength() const;
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    bool IsOpen() const { return m_hFile >= 0; }

    CString GetFilePath() const { return m_strFileName; }
    CString GetFileName() const;

protected:
    int m_hFile = -1;
    CString m_strFileName;
};

class CMemFile : public CFile
{
public:
    explicit CMemFile(UINT nGrowBytes = 1024);
    // Wraps an existing block: with nGrowBytes 0 the file is that block, of
    // fixed size; otherwise it starts empty and the block (from malloc) grows.
    CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    ~CMemFile() override;

    void Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    // Hands the block to the caller, who frees it with free().
    BYTE* Detach();

    BOOL Open(const char*, UINT, CFileException* = nullptr) override { return FALSE; }
    void Close() override;
    void Abort() override { Close(); }
    UINT Read(void* lpBuf, UINT nCount) override;
    void Write(const void* lpBuf, UINT nCount) override;
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    ULONGLONG GetLength() const override { return m_nFileSize; }
    ULONGLONG GetPosition() const override { return m_nPosition; }
    bool HasKnownLength() const override { return true; }
    void SetLength(ULONGLONG nNewLen);
    const BYTE* GetBuffer() const { return m_lpBuffer; }

private:
    void GrowTo(size_t nNewSize);

    UINT m_nGrowBytes;
    BYTE* m_lpBuffer = nullptr;
    size_t m_nBufferSize = 0;
    size_t m_nFileSize = 0;
    size_t m_nPosition = 0;
    bool m_bAutoDelete = true;
};
