// Readers of outside formats: bytes in, named vectors out. No chart here.
#pragma once

#include <complex>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace plotvane::io
{

// A reader's complaint, with where in the input it arose.
class ReadError : public std::runtime_error
{
public:
    // what() reads "<source>:<line>: <message>" (or "<source>: byte <n>: <message>"
    // for binary data). Line 0 is for faults of the whole input ("<source>: <message>").
    ReadError(const std::string& source, std::size_t line, const std::string& message);
    ReadError(const std::string& source, const std::string& byteWhere, const std::string& message);
};

// One named vector. Real data fills values; complex data fills cvalues and
// leaves values empty.
struct Vector
{
    std::string name;  // "time", "v(dq_rx)", "S11", "x", a CSV header
    std::string kind;  // ngspice's type word ("time", "voltage", "frequency", ...); may be empty
    std::vector<double> values;
    std::vector<std::complex<double>> cvalues;
    bool IsComplex() const { return !cvalues.empty(); }
    std::size_t size() const { return IsComplex() ? cvalues.size() : values.size(); }
};

// A plot: vectors of equal length; vectors[0] is the scale (time, frequency,
// the CSV's first column).
struct Plot
{
    std::string title;     // ngspice "Title:"; empty elsewhere
    std::string name;      // ngspice "Plotname:" ("Transient Analysis", "AC Analysis"); file kind elsewhere
    std::vector<Vector> vectors;
    // Finds a vector by name (case-insensitive); null when absent.
    const Vector* Find(const std::string& vectorName) const;
};

struct SignalFile
{
    std::vector<Plot> plots;
};

// Each reader takes the whole file as bytes and a source name for messages.
SignalFile ReadNgspiceRaw(const std::string& bytes, const std::string& source);
SignalFile ReadCsv(const std::string& bytes, const std::string& source);

// Touchstone v1 (.s1p, .s2p, ...): the port count comes from the source's
// extension ("sNp"); without one, a first data line of 3 or 9 numbers
// means 1 or 2 ports. Y and Z values, which v1 writes normalised to the
// reference resistance, are given in siemens and ohms. Vectors:
// "frequency" in Hz (values), then the network
// parameters as complex values normalised to RI, named "S11", "S21", "S12",
// "S22" (or Y.. / Z..), in the file's order. Plot::name is "S", "Y" or "Z";
// Plot::title holds the reference resistance as text.
struct TouchstoneData
{
    char parameter = 'S'; // 'S', 'Y' or 'Z'
    double referenceOhms = 50.0;
    int ports = 1;
    std::vector<double> frequencyHz;
    // data[k] holds the ports*ports values of frequency k, row-major (N11, N12, ... for N>2;
    // for 2 ports the file order N11 N21 N12 N22 is converted to row-major).
    std::vector<std::vector<std::complex<double>>> data;
};
TouchstoneData ReadTouchstone(const std::string& bytes, const std::string& source);
SignalFile ToSignalFile(const TouchstoneData& t);
// |Z| seen at port 1 (ohms) at each frequency, from S, Y or Z with the
// reference resistance (the one-port input impedance for S11/Y11/Z11);
// infinite where the network is open (S11 = 1, Y11 = 0).
std::vector<double> InputImpedanceMagnitude(const TouchstoneData& t);

// Reads a file from disk and picks the reader by extension (.raw, .sNp,
// .csv/.txt) or, failing that, by its first bytes. Throws ReadError (or
// std::runtime_error for a file that cannot be opened, naming the path).
// Refuses files over maxBytes with a clear message.
SignalFile ReadSignalFile(const std::string& path, std::size_t maxBytes = std::size_t(2) << 30);

} // namespace plotvane::io
