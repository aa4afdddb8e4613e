#include "foundation/archive_bytes.h"

#include <plotvane/foundation/ArrayRecord.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/ValueArrays.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <unistd.h>

namespace
{
using plotvane_test::Bytes;
using plotvane_test::CauseOf;
using plotvane_test::Loader;
using plotvane_test::Store;
using plotvane_test::StoreWith;

Bytes Head(const Bytes& b, size_t n)
{
    return Bytes(b.begin(), b.begin() + long(std::min(n, b.size())));
}

} // namespace

TEST(ArchiveEncoding, PrimitivesAreLittleEndianAndExactWidth)
{
    Bytes b = StoreWith([](CArchive& ar)
                        { ar << 0x01020304 << UINT(0xAABBCCDD) << 1.0 << LONGLONG(-2); });
    EXPECT_EQ(b, (Bytes{0x04, 0x03, 0x02, 0x01, 0xDD, 0xCC, 0xBB, 0xAA, 0,    0,    0,    0,
                        0,    0,    0xF0, 0x3F, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(ArchiveEncoding, StringPrefixBoundaries)
{
    struct Case
    {
        int length;
        Bytes prefix;
    };
    const Case cases[] = {
        {0, {0x00}},
        {254, {0xFE}},
        {255, {0xFF, 0xFF, 0x00}},
        {0xFFFD, {0xFF, 0xFD, 0xFF}},
        {0xFFFE, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {0x10000, {0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00}},
    };
    for (const Case& c : cases)
    {
        const CString text = CString('a', c.length);
        Bytes b = StoreWith([&](CArchive& ar) { ar << text; });
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
    const struct
    {
        Bytes bytes;
        const char* text;
    } cases[] = {
        {{0xFF, 0xFE, 0xFF, 0x02, 'V', 0, 0xBC, 0x03}, "V\xCE\xBC"}, // "Vμ"
        {{0xFF, 0xFE, 0xFF, 0x01, 0x3C, 0xD8}, "\xEF\xBF\xBD"},      // lone surrogate: U+FFFD
        {{0xFF, 0xFE, 0xFF, 0xFF, 0x01, 0x00, 'x', 0}, "x"},         // long prefix inside
    };
    for (const auto& c : cases)
    {
        Loader in(c.bytes);
        CString s;
        in.ar >> s;
        EXPECT_EQ(s, c.text);
    }
    Loader cut(Bytes{0xFF, 0xFE, 0xFF, 0x04, 'V', 0, 0xBC, 0x03, 0x3C, 0xD8, 0x00});
    CString s;
    EXPECT_THROW(cut.ar >> s, CArchiveException); // the fourth unit is cut short
}

TEST(ArchiveEncoding, WriteCountBoundaries)
{
    struct Case
    {
        ULONGLONG count;
        Bytes bytes;
    };
    const Case cases[] = {
        {0, {0, 0}},
        {0xFFFE, {0xFE, 0xFF}},
        {0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}},
        {0xFFFFFFFEull, {0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}},
        {0xFFFFFFFFull, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}},
    };
    for (const Case& c : cases)
    {
        Bytes b = StoreWith([&](CArchive& ar) { ar.WriteCount(c.count); });
        EXPECT_EQ(b, c.bytes) << c.count;
        Loader in(b);
        EXPECT_EQ(in.ar.ReadCount(), c.count);
    }
}

TEST(ArchiveEncoding, ArrayRecordHeadersAndLoadingInPlace)
{
    Bytes b = StoreWith([](CArchive& ar) { plotvane::WriteArrayHeader(ar, 1, 2); });
    EXPECT_EQ(b, (Bytes{1, 0, 0, 0x80, 2, 0, 0, 0, 0, 0, 0, 0}));

    // A word without the high bit carries a 4-byte count.
    CNSetArray sets;
    Loader in(Bytes{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 7, 0, 0, 0});
    sets.Serialize(in.ar);
    ASSERT_EQ(sets.GetSize(), 1);
    EXPECT_EQ(sets.GetAt(0)->GetAt(0), 7);

    // Another version empties the array and reads nothing more.
    Loader in2(Bytes{2, 0, 0, 0x80, 0xAA});
    sets.Serialize(in2.ar);
    EXPECT_EQ(sets.GetSize(), 0);
    BYTE next = 0;
    in2.ar >> next;
    EXPECT_EQ(next, 0xAA);

    // A loaded value array replaces what it held.
    CArrayD d, back;
    d.Add(0.5);
    back.Add(9.0);
    Loader in3(Store(d));
    back.Serialize(in3.ar);
    EXPECT_TRUE(back == d);
}

TEST(ArchiveErrors, WrongModeAndEndOfFileRaiseWithTheFileName)
{
    char path[] = "/tmp/plotvane_archive_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    // Each fault names the file.
    auto expectCause = [&path](const std::function<void()>& f, int nCause)
    {
        CString name;
        EXPECT_EQ(CauseOf(f, &name), nCause);
        EXPECT_EQ(name, path);
    };
    int v = 0;
    {
        CFile file(path, CFile::modeCreate | CFile::modeWrite);
        CArchive ar(&file, CArchive::store);
        expectCause([&] { ar >> v; }, CArchiveException::writeOnly);
        ar << 5;
    }
    CFile file(path, CFile::modeRead);
    CArchive ar(&file, CArchive::load);
    expectCause([&] { ar << 1; }, CArchiveException::readOnly);
    ar >> v;
    EXPECT_EQ(v, 5);
    expectCause([&] { ar >> v; }, CArchiveException::endOfFile);
    std::remove(path);
}

TEST(ArchiveErrors, ShortReadsAndHugeCountsRaise)
{
    Bytes b = StoreWith([](CArchive& ar) { ar << CString("abcdef"); });
    for (size_t cut = 0; cut < b.size(); ++cut)
    {
        Loader in(Head(b, cut));
        CString s;
        EXPECT_THROW(in.ar >> s, CArchiveException) << cut;
    }
    Loader in(Bytes{1, 2, 3});
    double d;
    EXPECT_THROW(in.ar >> d, CArchiveException);

    // 40 bytes that claim billions of elements are refused before allocating.
    auto claim = [](Bytes head, unsigned char fill)
    {
        head.resize(40, fill);
        return head;
    };
    Loader doubles(claim(
        {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}, 0));
    CArrayD a;
    EXPECT_EQ(CauseOf([&] { a.Serialize(doubles.ar); }), CArchiveException::endOfFile);
    Loader str(claim({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}, 'x'));
    CString s;
    EXPECT_THROW(str.ar >> s, CArchiveException);
    Loader records(claim({1, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}, 0));
    CNSetArray sets;
    EXPECT_THROW(sets.Serialize(records.ar), CArchiveException);
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
        ar << CString(CString('z', 300));
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
