// Archive bytes for tests: expected streams built field by field, what an
// archive stores, and a loading archive over given bytes.
#pragma once

#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCArchive.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace plotvane_test
{
// Little-endian stream bytes, appended field by field.
struct Bytes : std::vector<unsigned char>
{
    using std::vector<unsigned char>::vector;
    template <class T> Bytes& Raw(T v)
    {
        unsigned char b[sizeof v];
        std::memcpy(b, &v, sizeof v);
        insert(end(), b, b + sizeof v);
        return *this;
    }
    Bytes& I32(std::uint32_t v) { return Raw(v); } // signed values wrap to the same bytes
    Bytes& F32(float v) { return Raw(v); }
    Bytes& F64(double v) { return Raw(v); }
    Bytes& Count(std::uint16_t n) { return Raw(n); } // WriteCount below 0xFFFF
    Bytes& ArrayHeader(std::uint32_t version, std::uint64_t n)
    {
        return I32(version | 0x80000000u).Raw(n);
    }
    Bytes& Str(const std::string& s) // short strings: one-byte prefix
    {
        push_back((unsigned char)s.size());
        insert(end(), s.begin(), s.end());
        return *this;
    }
    Bytes& Add(const Bytes& b)
    {
        insert(end(), b.begin(), b.end());
        return *this;
    }
};

// The bytes a storing archive holds after write(ar).
template <class Write> Bytes StoreWith(Write write)
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        write(ar);
        ar.Close();
    }
    const BYTE* p = file.GetBuffer();
    return Bytes(p, p + file.GetLength());
}

template <class T> Bytes Store(T& obj)
{
    return StoreWith([&obj](CArchive& ar) { obj.Serialize(ar); });
}

// A loading archive over a copy of the given bytes.
struct Loader
{
    explicit Loader(const Bytes& bytes)
        : data(bytes), file(data.data(), UINT(data.size())), ar(&file, CArchive::load)
    {
    }
    Bytes data;
    CMemFile file;
    CArchive ar;
};

// The cause of the archive exception that f raises, or -1; its file name goes
// to pName.
inline int CauseOf(const std::function<void()>& f, CString* pName = nullptr)
{
    try
    {
        f();
    }
    catch (const CArchiveException& e)
    {
        if (pName)
            *pName = e.m_strFileName;
        return e.m_cause;
    }
    return -1;
}
} // namespace plotvane_test
