// Runs the built plotvane-render in a private directory and keeps what it
// printed.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace plotvane_test
{
inline std::string Slurp(const std::string& path)
{
    std::stringstream ss;
    ss << std::ifstream(path).rdbuf();
    return ss.str();
}

// The number after "key": in a report, from offset from on; NaN for null
// or a missing key.
inline double JsonNumber(const std::string& json, const std::string& key, std::size_t from = 0)
{
    const std::size_t at = json.find("\"" + key + "\": ", from);
    if (at == std::string::npos)
        return NAN;
    const char* p = json.c_str() + at + key.size() + 4;
    char* end = nullptr;
    const double v = std::strtod(p, &end);
    return end == p ? NAN : v;
}

// The text after "key": up to the end of its line, quotes and comma left
// off: a string's content, "null", "true" or "false".
inline std::string JsonString(const std::string& json, const std::string& key)
{
    const std::size_t at = json.find("\"" + key + "\": ");
    if (at == std::string::npos)
        return std::string();
    std::size_t from = at + key.size() + 4;
    std::size_t to = json.find('\n', from);
    if (to != std::string::npos && to > from && json[to - 1] == ',')
        --to;
    if (json[from] == '"')
        return json.substr(from + 1, json.find('"', from + 1) - from - 1);
    return json.substr(from, to - from);
}

struct Result
{
    int status = -1;
    std::string out;
    std::string err;
};

class RenderProgramTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_dir = "/tmp/plotvane_render_test_" + std::to_string(getpid());
        ASSERT_EQ(std::system(("mkdir -p " + m_dir).c_str()), 0);
    }
    void TearDown() override { std::system(("rm -rf " + m_dir).c_str()); }

    std::string Path(const std::string& name) const { return m_dir + "/" + name; }
    // Whether the file is there and not empty.
    bool Written(const std::string& name) const
    {
        struct stat st;
        return stat(Path(name).c_str(), &st) == 0 && st.st_size > 0;
    }
    void WriteCsv(const std::string& name, const std::vector<double>& x,
                  const std::vector<double>& y) const
    {
        std::FILE* f = std::fopen(Path(name).c_str(), "w");
        ASSERT_NE(f, nullptr);
        std::fprintf(f, "time,volts\n");
        for (std::size_t i = 0; i < x.size(); ++i)
            std::fprintf(f, "%.17g,%.17g\n", x[i], y[i]);
        std::fclose(f);
    }

    // Runs in the test's directory, so that default outputs land there; env
    // is a prefix of variable settings.
    Result Run(const std::string& args, const std::string& env = "") const
    {
        const std::string out = Path("stdout.txt"), err = Path("stderr.txt");
        const std::string cmd = "cd '" + m_dir + "' && " + env + " '" PLOTVANE_RENDER_EXE "' " +
                                args + " >'" + out + "' 2>'" + err + "'";
        const int rc = std::system(cmd.c_str());
        Result r;
        r.status = WIFEXITED(rc) ? WEXITSTATUS(rc) : 128 + WTERMSIG(rc);
        r.out = Slurp(out);
        r.err = Slurp(err);
        return r;
    }
    // A demo drawn to NAME.png and saved to NAME.pvc; answers its report.
    std::string RunDemo(const std::string& name) const
    {
        const Result r = Run("--demo " + name + " -o " + name + ".png");
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(Written(name + ".png"));
        EXPECT_TRUE(Written(name + ".pvc"));
        return r.out;
    }

    std::string m_dir;
};
} // namespace plotvane_test
