// Line and token walking shared by the text readers, with the line numbers
// that their messages name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plotvane::io
{

// Spaces, tabs and carriage returns: a CRLF file reads as an LF one.
inline bool IsBlankChar(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

inline std::string_view TrimBlanks(std::string_view s)
{
    std::size_t b = 0, e = s.size();
    while (b < e && IsBlankChar(s[b]))
        ++b;
    while (e > b && IsBlankChar(s[e - 1]))
        --e;
    return s.substr(b, e - b);
}

// Splits at runs of blanks; out is cleared first.
void SplitBlanks(std::string_view line, std::vector<std::string_view>& out);
bool EqualsNoCase(std::string_view a, std::string_view b);
std::string ToLower(std::string_view s);
// A plain unsigned decimal ("233"), with no sign, blanks or overflow.
bool ParseCount(std::string_view s, std::size_t& value);

// Hands out the lines of a text one by one, without their line ends.
class LineCursor
{
public:
    explicit LineCursor(std::string_view text) : m_text(text) {}

    bool AtEnd() const { return m_nPos >= m_text.size(); }
    // The next line; its number becomes Line().
    std::string_view Next();
    // Where the next line starts.
    std::size_t Offset() const { return m_nPos; }
    // The number of the line Next() gave last (1 for the first), and its
    // byte offset.
    std::size_t Line() const { return m_nLine; }
    std::size_t LineStart() const { return m_nLineStart; }
    // Moves to a byte offset inside the text; the line count goes on from
    // there as if the bytes skipped held no line end.
    void Seek(std::size_t offset) { m_nPos = offset; }

private:
    std::string_view m_text;
    std::size_t m_nPos = 0;
    std::size_t m_nLine = 0;
    std::size_t m_nLineStart = 0;
};

} // namespace plotvane::io
