// PLOTVANE_DATA_DIR pointed at a fresh, empty directory for the object's
// lifetime, so that no settings or marker file of the machine reaches a test;
// afterwards the variable is restored and the directory removed with all it
// holds.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

class ScopedDataDir
{
public:
    ScopedDataDir()
    {
        char tmpl[] = "/tmp/plotvane-data-XXXXXX";
        if (::mkdtemp(tmpl) == nullptr)
            throw std::runtime_error("no temporary data directory");
        m_dir = tmpl;
        const char* old = std::getenv("PLOTVANE_DATA_DIR");
        m_hadOld = old != nullptr;
        m_old = m_hadOld ? old : "";
        PointAt(m_dir);
    }
    ~ScopedDataDir()
    {
        if (m_hadOld)
            ::setenv("PLOTVANE_DATA_DIR", m_old.c_str(), 1);
        else
            ::unsetenv("PLOTVANE_DATA_DIR");
        std::error_code ec;
        std::filesystem::remove_all(m_dir, ec);
    }
    ScopedDataDir(const ScopedDataDir&) = delete;
    ScopedDataDir& operator=(const ScopedDataDir&) = delete;

    // Points the variable elsewhere until the object goes.
    static void PointAt(const std::string& dir) { ::setenv("PLOTVANE_DATA_DIR", dir.c_str(), 1); }
    const std::string& Path() const { return m_dir; }

private:
    std::string m_dir;
    std::string m_old;
    bool m_hadOld = false;
};
