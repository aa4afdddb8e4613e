// Files and messages for the reader tests.
#pragma once

#include <plotvane/io/SignalFile.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace plotvane_test
{

// A fixture of tests/io/data.
inline std::string IoDataPath(const std::string& name)
{
    return (std::filesystem::path(__FILE__).parent_path() / "data" / name).string();
}

inline std::string ReadBytes(const std::string& path)
{
    std::stringstream ss;
    ss << std::ifstream(path, std::ios::binary).rdbuf();
    return ss.str();
}

inline void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// The message of the E that f raises; empty if none.
template <class E = plotvane::io::ReadError> std::string ReadErrorOf(const std::function<void()>& f)
{
    try
    {
        f();
    }
    catch (const E& e)
    {
        return e.what();
    }
    return std::string();
}

inline std::vector<std::string> VectorNames(const plotvane::io::Plot& plot)
{
    std::vector<std::string> names;
    for (const auto& v : plot.vectors)
        names.push_back(v.name);
    return names;
}

} // namespace plotvane_test
