// The exception family of the component. Everything is thrown by value and
// caught by reference; all derive from std::exception so a host can catch
// broadly.
#pragma once

#include <plotvane/foundation/MFCString.h>

#include <exception>

class CException : public std::exception
{
public:
    CException() = default;
    ~CException() override = default;
    const char* what() const noexcept override { return "CException"; }
};

class CInvalidArgException : public CException
{
public:
    const char* what() const noexcept override { return "invalid argument"; }
};

class CArchiveException : public CException
{
public:
    enum
    {
        none = 0,
        genericException = 1,
        readOnly = 2,
        endOfFile = 3,
        writeOnly = 4,
        badIndex = 5,
        badClass = 6,
        badSchema = 7
    };

    explicit CArchiveException(int cause = none, const CString& strFileName = CString());
    const char* what() const noexcept override { return m_strWhat.c_str(); }

    int m_cause;
    CString m_strFileName;

private:
    std::string m_strWhat;
};

class CFileException : public CException
{
public:
    enum
    {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        accessDenied = 5,
        endOfFile = 14
    };

    explicit CFileException(int cause = none, const CString& strFileName = CString(),
                            int osError = 0);
    const char* what() const noexcept override { return m_strWhat.c_str(); }

    int m_cause;
    CString m_strFileName;
    int m_lOsError;

private:
    std::string m_strWhat;
};

[[noreturn]] void AfxThrowInvalidArgException();
[[noreturn]] void AfxThrowArchiveException(int cause, const CString& strFileName = CString());
[[noreturn]] void AfxThrowFileException(int cause, int osError = 0,
                                        const CString& strFileName = CString());
