// A small JSON writer for the reports of plotvane-render: objects, arrays,
// strings, numbers, booleans and null, indented two spaces a level.
#pragma once

#include <string>
#include <vector>

namespace plotvane
{

class JsonWriter
{
public:
    void BeginObject();
    void EndObject();
    void BeginArray();
    void EndArray();
    // The name of the next value inside an object.
    void Key(const std::string& key);
    void String(const std::string& value);
    // Shortest text that reads back as the same double; NaN and the
    // infinities, which JSON cannot hold, become null.
    void Number(double value);
    void Bool(bool value);
    void Null();

    // The document so far, ending in a newline once the outer value closes.
    const std::string& Text() const { return m_text; }

private:
    void BeforeValue();
    void Close(char bracket);
    void NewLine();

    std::string m_text;
    // Per open level: whether it holds a value yet.
    std::vector<bool> m_stack;
    bool m_bAfterKey = false;
};

// The JSON string literal of text, quotes included: '"', '\\' and the
// control characters are escaped; other bytes (UTF-8) pass as they are.
std::string JsonQuote(const std::string& text);

// Rounds to n decimals, leaving non-finite values alone.
double RoundTo(double value, int nDecimals);

// The report's "files" member: absolute paths of what the run wrote; an
// empty report path is null.
void WriteFilesMember(JsonWriter& json, const std::string& png, const std::string& chart,
                      const std::string& report);
// Writes the finished report to reportFile (when one is given) and to
// standard output. Throws std::runtime_error when the file cannot be
// written.
void EmitReport(const JsonWriter& json, const std::string& reportFile);

} // namespace plotvane
