// Files and messages for the reader tests.
#pragma once

#include <plotvane/io/SignalFile.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

namespace plotvane_test
{

// A fixture of tests/io/data.
inline std::string IoDataPath(const std::string& name)
{
    return (std::filesystem::path(__FILE__).parent_path() / "data" / name).string();
}

inline std::string ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

inline void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// The message of the ReadError that f raises; empty if none.
inline std::string ReadErrorOf(const std::function<void()>& f)
{
    try
    {
        f();
    }
    catch (const plotvane::io::ReadError& e)
    {
        return e.what();
    }
    return std::string();
}

} // namespace plotvane_test
