#include <plotvane/io/TextLines.h>

#include <charconv>
#include <cstring>

namespace plotvane::io
{

void SplitBlanks(std::string_view line, std::vector<std::string_view>& out)
{
    out.clear();
    std::size_t i = 0;
    while (i < line.size())
    {
        while (i < line.size() && IsBlankChar(line[i]))
            ++i;
        const std::size_t b = i;
        while (i < line.size() && !IsBlankChar(line[i]))
            ++i;
        if (i > b)
            out.push_back(line.substr(b, i - b));
    }
}

namespace
{
char LowerChar(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}
} // namespace

bool EqualsNoCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        if (LowerChar(a[i]) != LowerChar(b[i]))
            return false;
    }
    return true;
}

std::string ToLower(std::string_view s)
{
    std::string out(s);
    for (char& c : out)
        c = LowerChar(c);
    return out;
}

bool ParseCount(std::string_view s, std::size_t& value)
{
    if (s.empty() || s.front() < '0' || s.front() > '9')
        return false;
    auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    return ec == std::errc() && ptr == s.data() + s.size();
}

std::string_view LineCursor::Next()
{
    const std::size_t begin = m_nPos;
    const void* nl = std::memchr(m_text.data() + begin, '\n', m_text.size() - begin);
    const std::size_t end =
        nl ? std::size_t(static_cast<const char*>(nl) - m_text.data()) : m_text.size();
    m_nPos = end + 1;
    m_nLineStart = begin;
    ++m_nLine;
    std::string_view line = m_text.substr(begin, end - begin);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

} // namespace plotvane::io
