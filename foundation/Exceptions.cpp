#include <plotvane/foundation/Exceptions.h>

#include <cstring>

namespace
{
const char* ArchiveCauseText(int cause)
{
    switch (cause)
    {
    case CArchiveException::readOnly:
        return "archive is loading; it cannot be written";
    case CArchiveException::endOfFile:
        return "unexpected end of archive";
    case CArchiveException::writeOnly:
        return "archive is storing; it cannot be read";
    case CArchiveException::badIndex:
        return "bad index in archive";
    case CArchiveException::badClass:
        return "bad class in archive";
    case CArchiveException::badSchema:
        return "bad schema in archive";
    default:
        return "archive error";
    }
}
} // namespace

CArchiveException::CArchiveException(int cause, const CString& strFileName)
    : m_cause(cause), m_strFileName(strFileName)
{
    m_strWhat = ArchiveCauseText(cause);
    if (!strFileName.IsEmpty())
        m_strWhat += std::string(": ") + strFileName.GetString();
}

CFileException::CFileException(int cause, const CString& strFileName, int osError)
    : m_cause(cause), m_strFileName(strFileName), m_lOsError(osError)
{
    m_strWhat = "file error";
    if (osError != 0)
        m_strWhat += std::string(" (") + std::strerror(osError) + ")";
    if (!strFileName.IsEmpty())
        m_strWhat += std::string(": ") + strFileName.GetString();
}

void AfxThrowInvalidArgException()
{
    throw CInvalidArgException();
}

void AfxThrowArchiveException(int cause, const CString& strFileName)
{
    throw CArchiveException(cause, strFileName);
}

void AfxThrowFileException(int cause, int osError, const CString& strFileName)
{
    throw CFileException(cause, strFileName, osError);
}
