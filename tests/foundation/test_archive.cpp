#include <plotvane/foundation/ArrayRecord.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/ValueArrays.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
using Bytes = std::vector<unsigned char>;

// The bytes that a storing archive produces.
Bytes Store(const std::function<void(CArchive&)>& write)
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

// A loading archive over a copy of the given bytes.
struct Loader
{
    explicit Loader(const Bytes& bytes) : data(bytes), file(data.data(), UINT(data.size())), ar(&file, CArchive::load) {}
    Bytes data;
    CMemFile file;
    CArchive ar;
};

Bytes Prefix(std::initializer_list<unsigned> bytes)
{
    Bytes out;
    for (unsigned b : bytes)
        out.push_back((unsigned char)b);
    return out;
}

Bytes Head(const Bytes& b, size_t n)
{
    return Bytes(b.begin(), b.begin() + long(std::min(n, b.size())));
}

CString Repeat(char c, int n)
{
    return CString(c, n);
}
} // namespace

TEST(ArchiveEncoding, PrimitivesAreLittleEndianAndExactWidth)
{
    Bytes b = Store([](CArchive& ar) { ar << 0x01020304 << UINT(0xAABBCCDD) << 1.0 << LONGLONG(-2); });
    EXPECT_EQ(b, (Bytes{0x04, 0x03, 0x02, 0x01, 0xDD, 0xCC, 0xBB, 0xAA, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F,
                        0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(ArchiveEncoding, StringPrefixBoundaries)
{
    struct Case
    {
        int length;
        Bytes prefix;
    };
    const Case cases[] = {
        {0, Prefix({0x00})},
        {254, Prefix({0xFE})},
        {255, Prefix({0xFF, 0xFF, 0x00})},
        {0xFFFD, Prefix({0xFF, 0xFD, 0xFF})},
        {0xFFFE, Prefix({0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00})},
        {0x10000, Prefix({0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00})},
    };
    for (const Case& c : cases)
    {
        const CString text = Repeat('a', c.length);
        Bytes b = Store([&](CArchive& ar) { ar << text; });
        ASSERT_EQ(b.size(), c.prefix.size() + size_t(c.length)) << c.length;
        EXPECT_EQ(Head(b, c.prefix.size()), c.prefix) << c.length;

        Loader in(b);
        CString back;
        in.ar >> back;
        EXPECT_EQ(back, text) << c.length;
    }
}

TEST(ArchiveEncoding, WideStringsAreReadAndConvertedToUtf8)
{
    // 0xFF, 0xFFFE marks the wide form; then the usual prefix, then UTF-16LE.
    Bytes cut = Prefix({0xFF, 0xFE, 0xFF, 0x04, 'V', 0, 0xBC, 0x03, 0x3C, 0xD8, 0x00});
    Loader in(cut);
    CString s;
    EXPECT_THROW(in.ar >> s, CArchiveException); // the fourth unit is cut short

    // An unpaired surrogate becomes U+FFFD rather than invalid UTF-8.
    Bytes lone = Prefix({0xFF, 0xFE, 0xFF, 0x01, 0x3C, 0xD8});
    Loader inLone(lone);
    inLone.ar >> s;
    EXPECT_EQ(s, "\xEF\xBF\xBD");

    Bytes ok = Prefix({0xFF, 0xFE, 0xFF, 0x02, 'V', 0, 0xBC, 0x03});
    Loader in2(ok);
    in2.ar >> s;
    EXPECT_EQ(s, "V\xCE\xBC"); // "Vμ"

    // Wide form with the long prefix inside.
    Bytes longForm = Prefix({0xFF, 0xFE, 0xFF, 0xFF, 0x01, 0x00, 'x', 0});
    Loader in3(longForm);
    in3.ar >> s;
    EXPECT_EQ(s, "x");
}

TEST(ArchiveEncoding, WriteCountBoundaries)
{
    struct Case
    {
        ULONGLONG count;
        Bytes bytes;
    };
    const Case cases[] = {
        {0, Prefix({0, 0})},
        {0xFFFE, Prefix({0xFE, 0xFF})},
        {0xFFFF, Prefix({0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00})},
        {0xFFFFFFFEull, Prefix({0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF})},
        {0xFFFFFFFFull, Prefix({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0})},
    };
    for (const Case& c : cases)
    {
        Bytes b = Store([&](CArchive& ar) { ar.WriteCount(c.count); });
        EXPECT_EQ(b, c.bytes) << c.count;
        Loader in(b);
        EXPECT_EQ(in.ar.ReadCount(), c.count);
    }
}

TEST(ArchiveEncoding, ArraysOfIntsAndDoubles)
{
    CNSet set;
    set.Add(3);
    set.Add(-1);
    Bytes b = Store([&](CArchive& ar) { set.Serialize(ar); });
    EXPECT_EQ(b, (Bytes{2, 0, 3, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));

    CArrayD d;
    d.Add(0.5);
    Bytes bd = Store([&](CArchive& ar) { d.Serialize(ar); });
    EXPECT_EQ(bd, (Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F}));
    Loader in(bd);
    CArrayD back;
    back.Add(9.0);
    back.Serialize(in.ar);
    EXPECT_TRUE(back == d);
}

TEST(ArchiveEncoding, PointRecordsKeepXBeforeY)
{
    CPointN n(1, 2);
    CPointF f(1.0f, 2.0f);
    Bytes b = Store([&](CArchive& ar) {
        n.Serialize(ar);
        f.Serialize(ar);
    });
    EXPECT_EQ(b, (Bytes{1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0x80, 0x3F, 0, 0, 0, 0x40}));
}

TEST(ArchiveEncoding, ArrayRecordHeaderCountWidth)
{
    Bytes b = Store([](CArchive& ar) { plotvane::WriteArrayHeader(ar, 1, 2); });
    EXPECT_EQ(b, (Bytes{1, 0, 0, 0x80, 2, 0, 0, 0, 0, 0, 0, 0}));

    // A word without the high bit carries a 4-byte count.
    CNSetArray sets;
    Bytes shortForm = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 7, 0, 0, 0};
    Loader in(shortForm);
    sets.Serialize(in.ar);
    ASSERT_EQ(sets.GetSize(), 1);
    EXPECT_EQ(sets.GetAt(0)->GetAt(0), 7);

    // Another version empties the array and reads nothing more.
    Bytes otherVersion = {2, 0, 0, 0x80, 0xAA};
    Loader in2(otherVersion);
    sets.Serialize(in2.ar);
    EXPECT_EQ(sets.GetSize(), 0);
    BYTE next = 0;
    in2.ar >> next;
    EXPECT_EQ(next, 0xAA);
}

TEST(ArchiveErrors, WrongModeRaisesWithTheFileName)
{
    char path[] = "/tmp/plotvane_archive_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    {
        CFile file(path, CFile::modeCreate | CFile::modeWrite);
        CArchive ar(&file, CArchive::store);
        int v = 0;
        try
        {
            ar >> v;
            FAIL() << "read on a storing archive";
        }
        catch (const CArchiveException& e)
        {
            EXPECT_EQ(e.m_cause, CArchiveException::writeOnly);
            EXPECT_EQ(e.m_strFileName, path);
        }
        ar << 5;
    }
    CFile file(path, CFile::modeRead);
    CArchive ar(&file, CArchive::load);
    try
    {
        ar << 1;
        FAIL() << "write on a loading archive";
    }
    catch (const CArchiveException& e)
    {
        EXPECT_EQ(e.m_cause, CArchiveException::readOnly);
        EXPECT_EQ(e.m_strFileName, path);
    }
    int v = 0;
    ar >> v;
    EXPECT_EQ(v, 5);
    try
    {
        ar >> v;
        FAIL() << "read past the end";
    }
    catch (const CArchiveException& e)
    {
        EXPECT_EQ(e.m_cause, CArchiveException::endOfFile);
        EXPECT_EQ(e.m_strFileName, path);
    }
    std::remove(path);
}

TEST(ArchiveErrors, ShortReadsRaiseEndOfFile)
{
    Bytes b = Store([](CArchive& ar) { ar << CString("abcdef"); });
    for (size_t cut = 0; cut < b.size(); ++cut)
    {
        Loader in(Head(b, cut));
        CString s;
        EXPECT_THROW(in.ar >> s, CArchiveException) << cut;
    }
    Loader in(Bytes{1, 2, 3});
    double d;
    EXPECT_THROW(in.ar >> d, CArchiveException);
}

TEST(ArchiveErrors, HugeCountsAreRefusedBeforeAllocating)
{
    // 40 bytes that claim billions of elements.
    Bytes doubles = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
    doubles.resize(40, 0);
    Loader in(doubles);
    CArrayD d;
    try
    {
        d.Serialize(in.ar);
        FAIL();
    }
    catch (const CArchiveException& e)
    {
        EXPECT_EQ(e.m_cause, CArchiveException::endOfFile);
    }

    Bytes str = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
    str.resize(40, 'x');
    Loader in2(str);
    CString s;
    EXPECT_THROW(in2.ar >> s, CArchiveException);

    Bytes records = {1, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
    records.resize(40, 0);
    Loader in3(records);
    CNSetArray sets;
    EXPECT_THROW(sets.Serialize(in3.ar), CArchiveException);
    EXPECT_EQ(sets.GetSize(), 0);
}

TEST(ArchiveBuffering, LargePayloadsCrossTheBufferExactly)
{
    CArrayD d;
    for (int i = 0; i < 5000; ++i)
        d.Add(i * 0.25);
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store, 128);
        ar << BYTE(1);
        d.Serialize(ar);
        ar << CString(Repeat('z', 300));
    } // the destructor flushes
    EXPECT_EQ(file.GetLength(), 1u + 2u + 5000u * 8u + 3u + 300u);
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load, 128);
    BYTE one = 0;
    CArrayD back;
    CString z;
    ar >> one;
    back.Serialize(ar);
    ar >> z;
    EXPECT_EQ(one, 1);
    EXPECT_TRUE(back == d);
    EXPECT_EQ(z.GetLength(), 300);
}
