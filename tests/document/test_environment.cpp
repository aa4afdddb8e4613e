#include "common/scoped_data_dir.h"
#include "foundation/archive_bytes.h"

#include <plotvane/document/GLPlotvane_Environment.h>

#include <plotvane/foundation/Exceptions.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

using plotvane_test::Bytes;

// The seven ints of a default object, after the version word.
Bytes Header(unsigned version)
{
    return Bytes().I32(version).I32(0).I32(1).I32(6).I32(12).I32(12).I32(20);
}

// Runs each test against a private data directory.
class EnvironmentFile : public ::testing::Test
{
protected:
    std::string FilePath() const { return m_data.Path() + "/Chart.uis"; }
    void WriteFile(const Bytes& b) const
    {
        std::ofstream(FilePath(), std::ios::binary)
            .write((const char*)b.data(), std::streamsize(b.size()));
    }
    Bytes ReadFile() const
    {
        std::ifstream in(FilePath(), std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    std::vector<std::string> Entries() const
    {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(m_data.Path()))
            names.push_back(e.path().filename().string());
        return names;
    }

    ScopedDataDir m_data;
};
} // namespace

TEST(Environment, DefaultsPresetsAndSetOperations)
{
    // Two presets, dark and light; background and label are a set's first
    // two entries.
    CGLPlotvane_Environment env;
    EXPECT_EQ(env.GetColorSetCount(), 2);
    EXPECT_EQ(env.GetBackgroundColor(), 0x000000u);
    EXPECT_EQ(env.GetLabelColor(), 0xFFFFFFu);
    env.SetCurColorIndex(1);
    EXPECT_EQ(env.GetBackgroundColor(), 0xFFFFFFu);
    EXPECT_EQ(env.GetLabelColor(), 0x000000u);
    env.SetCurColorIndex(5);
    EXPECT_EQ(env.GetColorSet(), nullptr);

    // Init appends the presets again; delete refuses only indices past the end.
    env.Init();
    EXPECT_EQ(env.GetColorSetCount(), 4);
    EXPECT_EQ(env.GetCurColorIndex(), 0);
    EXPECT_EQ(env.DeleteColorSet(4), 0);
    EXPECT_EQ(env.DeleteColorSet(0), 1);
    EXPECT_EQ(env.GetBackgroundColor(), 0xFFFFFFu);

    CDWordArray empty;
    env.SetColorSet(&empty, 0);
    EXPECT_THROW(env.GetBackgroundColor(), CInvalidArgException);

    // Equality compares contents; inequality compares addresses.
    CGLPlotvane_Environment a, b(a);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a != a);
    b.SetFontSizeValue(9);
    EXPECT_FALSE(a == b);
}

TEST_F(EnvironmentFile, SaveWritesUserSetsAndLoadAppendsThem)
{
    CGLPlotvane_Environment env;
    CDWordArray set;
    set.Add(0x112233);
    set.Add(0x445566);
    EXPECT_EQ(env.AddColorSet(&set), 2);
    env.SetCurColorIndex(2);
    ASSERT_EQ(env.SaveEnvironmentFIle(), 1);

    const Bytes golden = Header(3).I32(2).I32(3).Count(2).I32(0x112233).I32(0x445566);
    EXPECT_EQ(ReadFile(), golden);
    EXPECT_EQ(Entries(), std::vector<std::string>{"Chart.uis"});

    CGLPlotvane_Environment loaded;
    ASSERT_EQ(loaded.LoadEnvironmentFIle(), 1);
    EXPECT_TRUE(loaded == env);
    EXPECT_EQ(loaded.GetBackgroundColor(), 0x112233u);
    ASSERT_EQ(loaded.LoadEnvironmentFIle(), 1);
    EXPECT_EQ(loaded.GetColorSetCount(), 4);

    // Only sets from index 2 are saved: deleting a preset drops the user's.
    env.DeleteColorSet(0);
    ASSERT_EQ(env.SaveEnvironmentFIle(), 1);
    EXPECT_EQ(ReadFile(), Header(3).I32(2).I32(2));
}

TEST_F(EnvironmentFile, OlderVersionsReadWhatTheyHad)
{
    WriteFile(Header(1).I32(99)); // v1: five ints, two dropped
    CGLPlotvane_Environment v1;
    v1.SetFontSizeMeasure(33);
    ASSERT_EQ(v1.LoadEnvironmentFIle(), 1);
    EXPECT_EQ(v1.GetHighlightedLineWidth(), 6);
    EXPECT_EQ(v1.GetFontSizeMeasure(), 33);

    WriteFile(Bytes().I32(2).I32(1).I32(2).I32(3).I32(4).I32(5).I32(0).I32(0).I32(7));
    CGLPlotvane_Environment v2;
    v2.SetCurColorIndex(1);
    ASSERT_EQ(v2.LoadEnvironmentFIle(), 1);
    EXPECT_EQ(v2.GetGridLine(), 1);
    EXPECT_EQ(v2.GetFontSizeValue(), 5);
    EXPECT_EQ(v2.GetFontSizeMeasure(), 7);
    EXPECT_EQ(v2.GetCurColorIndex(), 1);
    EXPECT_EQ(v2.GetColorSetCount(), 2);

    for (unsigned version : {0u, 4u})
    {
        WriteFile(Bytes().I32(version).I32(9).I32(9));
        CGLPlotvane_Environment env;
        ASSERT_EQ(env.LoadEnvironmentFIle(), 1);
        EXPECT_EQ(env.GetGridLine(), 0);
    }
}

TEST_F(EnvironmentFile, FaultsLeaveNoDamagedFile)
{
    CGLPlotvane_Environment env;
    EXPECT_EQ(env.LoadEnvironmentFIle(), 0);
    EXPECT_EQ(env.GetBackgroundColor(), 0x000000u);

    // A set cut short raises the archive's end of file.
    WriteFile(Header(3).I32(0).I32(3).Count(4).I32(1));
    EXPECT_EQ(plotvane_test::CauseOf([&env] { env.LoadEnvironmentFIle(); }),
              CArchiveException::endOfFile);

    // A missing directory is created on the way.
    const std::string nested = m_data.Path() + "/a/b";
    ScopedDataDir::PointAt(nested);
    ASSERT_EQ(env.SaveEnvironmentFIle(), 1);
    EXPECT_TRUE(fs::exists(nested + "/Chart.uis"));

    // When the target cannot be replaced, the answer is 0 and no temporary
    // file is left behind.
    ScopedDataDir::PointAt(m_data.Path());
    fs::remove(FilePath());
    fs::create_directory(FilePath());
    EXPECT_EQ(env.SaveEnvironmentFIle(), 0);
    EXPECT_EQ(Entries().size(), 2u); // "a" and the directory "Chart.uis"

    // A data path under a plain file cannot be made.
    ScopedDataDir::PointAt(nested + "/Chart.uis/x");
    EXPECT_EQ(env.SaveEnvironmentFIle(), 0);
}
