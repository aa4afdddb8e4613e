// The curves that plotvane-render's inputs name: FILE or FILE:SIGNAL, where
// FILE is a CSV, ngspice raw or Touchstone file and SIGNAL a vector of a raw
// file ("v(dq_rx)") or a named column of a CSV file. Files are read once
// however many signals are taken from them.
#pragma once

#include "render/Axes.h"
#include <plotvane/io/SignalFile.h>

#include <map>
#include <string>
#include <vector>

namespace plotvane
{

struct SignalRef
{
    std::string path;
    std::string signal; // empty: the whole file
};

// Splits at the first ':' whose left part is a file that exists, so that
// paths with ':' and signal names with ':' both work; an argument that
// names an existing file is that file.
SignalRef ParseSignalRef(const std::string& arg);

// True for what the streaming CSV reader takes best: a whole file that is
// not a raw or Touchstone file by its extension.
bool IsWholeCsvFile(const SignalRef& ref);

// One curve.
struct Signal
{
    std::string name; // for the legend
    AxisSource x;
    AxisSource y;
    std::vector<double> xs;
    std::vector<double> ys;
    // |Z| in ohms over frequency: from a Touchstone file, or the magnitude of
    // an AC sweep's vector (the node's impedance when a 1 A AC current
    // source drives it).
    bool bImpedance = false;
};

class SignalReader
{
public:
    // Every curve the argument names: FILE:SIGNAL gives one; a whole raw file
    // gives each vector of its first plot of two or more points, a
    // Touchstone file the |Z| seen at port 1, a CSV file each y column.
    // Throws std::runtime_error with the file named and, for an unknown
    // signal, the names the file has.
    std::vector<Signal> Read(const std::string& arg);
    // Exactly one curve, for a role such as "data eye"; a file of several
    // asks for FILE:SIGNAL.
    Signal ReadOne(const std::string& arg, const std::string& role);

private:
    const io::SignalFile& File(const std::string& path);

    std::map<std::string, io::SignalFile> m_files;
};

} // namespace plotvane
