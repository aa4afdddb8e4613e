#include "render/JsonReport.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace plotvane
{

std::string JsonQuote(const std::string& text)
{
    std::string out;
    out.reserve(text.size() + 2);
    out += '"';
    for (const char c : text)
    {
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
            {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", unsigned(static_cast<unsigned char>(c)));
                out += buf;
            }
            else
                out += c;
        }
    }
    out += '"';
    return out;
}

double RoundTo(double value, int nDecimals)
{
    if (!std::isfinite(value))
        return value;
    const double f = std::pow(10.0, nDecimals);
    const double r = std::round(value * f) / f;
    // No "-0" in a report.
    return r == 0.0 ? 0.0 : r;
}

void JsonWriter::NewLine()
{
    m_text += '\n';
    m_text.append(m_stack.size() * 2, ' ');
}

void JsonWriter::BeforeValue()
{
    if (m_bAfterKey)
    {
        m_bAfterKey = false;
        return;
    }
    if (m_stack.empty())
        return;
    if (m_stack.back())
        m_text += ',';
    m_stack.back() = true;
    NewLine();
}

void JsonWriter::BeginObject()
{
    BeforeValue();
    m_text += '{';
    m_stack.push_back(false);
}

void JsonWriter::BeginArray()
{
    BeforeValue();
    m_text += '[';
    m_stack.push_back(false);
}

void JsonWriter::Close(char bracket)
{
    const bool bHeld = !m_stack.empty() && m_stack.back();
    if (!m_stack.empty())
        m_stack.pop_back();
    if (bHeld)
        NewLine();
    m_text += bracket;
    if (m_stack.empty())
        m_text += '\n';
}

void JsonWriter::EndObject()
{
    Close('}');
}

void JsonWriter::EndArray()
{
    Close(']');
}

void JsonWriter::Key(const std::string& key)
{
    BeforeValue();
    m_text += JsonQuote(key);
    m_text += ": ";
    m_bAfterKey = true;
}

void JsonWriter::String(const std::string& value)
{
    BeforeValue();
    m_text += JsonQuote(value);
}

void JsonWriter::Number(double value)
{
    if (!std::isfinite(value))
    {
        Null();
        return;
    }
    BeforeValue();
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    m_text.append(buf, ec == std::errc() ? end : buf);
}

void JsonWriter::Bool(bool value)
{
    BeforeValue();
    m_text += value ? "true" : "false";
}

void JsonWriter::Null()
{
    BeforeValue();
    m_text += "null";
}

namespace
{

std::string AbsolutePath(const std::string& path)
{
    std::error_code ec;
    const std::filesystem::path p = std::filesystem::absolute(path, ec);
    return ec ? path : p.lexically_normal().string();
}

} // namespace

void WriteFilesMember(JsonWriter& json, const std::string& png, const std::string& chart,
                      const std::string& report)
{
    json.Key("files");
    json.BeginObject();
    json.Key("png");
    json.String(AbsolutePath(png));
    json.Key("chart");
    json.String(AbsolutePath(chart));
    json.Key("report");
    if (report.empty())
        json.Null();
    else
        json.String(AbsolutePath(report));
    json.EndObject();
}

void EmitReport(const JsonWriter& json, const std::string& reportFile)
{
    if (!reportFile.empty())
    {
        std::ofstream file(reportFile, std::ios::binary);
        file << json.Text();
        if (!file.flush())
            throw std::runtime_error("cannot write report '" + reportFile + "'");
    }
    std::fputs(json.Text().c_str(), stdout);
}

} // namespace plotvane
