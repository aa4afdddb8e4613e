#include <plotvane/measure/EyeGenerator.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotvane
{
namespace
{
constexpr double kPi = 3.14159265358979323846;

// splitmix64: small, fast and the same on every platform. Kept apart from
// rand so that generating an eye does not move the colours of later arrays.
class Random
{
public:
    explicit Random(std::uint64_t nSeed) : m_nState(nSeed) {}

    std::uint64_t Next()
    {
        std::uint64_t z = (m_nState += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }

    // Uniform in [0, 1).
    double Uniform() { return double(Next() >> 11) * (1.0 / 9007199254740992.0); }

    // Box-Muller; 1 - Uniform() lies in (0, 1], so the logarithm is finite.
    double Gaussian()
    {
        const double u1 = 1.0 - Uniform();
        const double u2 = Uniform();
        return std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * kPi * u2);
    }

private:
    std::uint64_t m_nState;
};

// Fibonacci LFSR of the usual PRBS polynomials, started from all ones.
class Prbs
{
public:
    explicit Prbs(int nOrder)
    {
        switch (nOrder)
        {
        case 9:
            m_nTap = 5;
            break;
        case 11:
            m_nTap = 9;
            break;
        case 15:
            m_nTap = 14;
            break;
        case 23:
            m_nTap = 18;
            break;
        case 31:
            m_nTap = 28;
            break;
        default:
            nOrder = 7;
            m_nTap = 6;
            break;
        }
        m_nOrder = nOrder;
        m_nMask = (std::uint64_t(1) << nOrder) - 1;
        m_nState = m_nMask;
    }

    int Next()
    {
        const int bit = int(((m_nState >> (m_nOrder - 1)) ^ (m_nState >> (m_nTap - 1))) & 1);
        m_nState = ((m_nState << 1) | std::uint64_t(bit)) & m_nMask;
        return bit;
    }

private:
    int m_nOrder = 7;
    int m_nTap = 6;
    std::uint64_t m_nMask = 0;
    std::uint64_t m_nState = 0;
};

// One edge between two levels, given as fractions of the swing.
struct Edge
{
    double dCentre;
    double dFrom;
    double dTo;
};

// A waveform made of non-overlapping raised-cosine edges, read at times that
// never go back (the folded runs follow each other in time).
class EdgeTrain
{
public:
    EdgeTrain(const std::vector<Edge>& edges, double dInitial, double dRise)
        : m_edges(edges), m_dInitial(dInitial), m_dRise(dRise), m_dHalf(dRise * 0.5)
    {
    }

    double At(double t)
    {
        while (m_nNext < m_edges.size() && m_edges[m_nNext].dCentre - m_dHalf <= t)
            ++m_nNext;
        if (m_nNext == 0)
            return m_dInitial;
        const Edge& e = m_edges[m_nNext - 1];
        const double u = t - e.dCentre;
        if (u >= m_dHalf)
            return e.dTo;
        const double s = 0.5 * (1.0 - std::cos(kPi * (u / m_dRise + 0.5)));
        return e.dFrom + (e.dTo - e.dFrom) * s;
    }

private:
    const std::vector<Edge>& m_edges;
    double m_dInitial;
    double m_dRise;
    double m_dHalf;
    size_t m_nNext = 0;
};

double PositiveMod(double x, double m)
{
    const double r = std::fmod(x, m);
    return r < 0.0 ? r + m : r;
}

// Edge slots: edge m (m may be negative) is centred at dFirst + m * UI plus
// its jitter, and belongs to slot m & 1. Three edges before dFirst make sure
// that the waveform has settled before time 0.
constexpr int kEdgesBefore = 3;

int SlotOf(int m)
{
    return ((m % 2) + 2) % 2;
}

// Keeps the earliest and latest centre of each slot.
struct SlotSpread
{
    double dMin[2];
    double dMax[2];
    bool bSeen[2] = {false, false};

    void Add(int nSlot, double dPos)
    {
        if (!bSeen[nSlot])
        {
            bSeen[nSlot] = true;
            dMin[nSlot] = dMax[nSlot] = dPos;
            return;
        }
        dMin[nSlot] = std::min(dMin[nSlot], dPos);
        dMax[nSlot] = std::max(dMax[nSlot], dPos);
    }

    void Write(const double* pNominal, double* pMin, double* pMax) const
    {
        for (int s = 0; s < 2; ++s)
        {
            pMin[s] = bSeen[s] ? dMin[s] : pNominal[s];
            pMax[s] = bSeen[s] ? dMax[s] : pNominal[s];
        }
    }
};

struct EdgeLayout
{
    double dFirst; // centre of the slot-0 edge that follows time 0
    double dUI;
    double dJitterRms;
    double dJitterLimit;
    double dEnd; // last sampled instant
};

double DrawJitter(Random& rng, const EdgeLayout& lay)
{
    if (lay.dJitterRms <= 0.0)
        return 0.0;
    const double j = rng.Gaussian() * lay.dJitterRms;
    return std::max(-lay.dJitterLimit, std::min(lay.dJitterLimit, j));
}

int EdgeCount(const EdgeLayout& lay)
{
    return kEdgesBefore + int(std::ceil((lay.dEnd - lay.dFirst) / lay.dUI)) + 2;
}

// Data edges: a PRBS bit per slot, each bit covering 1 - dIsi of the way from
// the previous bit's level.
std::vector<Edge> DataEdges(const DdrEyeParams& p, const EdgeLayout& lay, const double* pNominal,
                            double& dInitial, SlotSpread& spread)
{
    Prbs prbs(p.nPrbsOrder);
    Random rng(p.nSeed);
    const double dIsi = std::max(0.0, std::min(1.0, p.dIsi));
    int nBit = prbs.Next();
    double dLevel = nBit;
    dInitial = dLevel;
    std::vector<Edge> edges;
    const int nEdges = EdgeCount(lay);
    edges.reserve(size_t(nEdges));
    for (int k = 0; k < nEdges; ++k)
    {
        const int m = k - kEdgesBefore;
        const double j = DrawJitter(rng, lay);
        const double c = lay.dFirst + m * lay.dUI + j;
        const int nNext = prbs.Next();
        const double dNext = dLevel + (nNext - dLevel) * (1.0 - dIsi);
        edges.push_back({c, dLevel, dNext});
        if (nNext != nBit && c >= 0.0 && c <= lay.dEnd)
            spread.Add(SlotOf(m), pNominal[SlotOf(m)] + j);
        nBit = nNext;
        dLevel = dNext;
    }
    return edges;
}

// Strobe edges: the level toggles at every slot, rising in slot 0.
std::vector<Edge> StrobeEdges(const DdrEyeParams& p, const EdgeLayout& lay, const double* pNominal,
                              double& dInitial, SlotSpread& spread)
{
    Random rng(p.nSeed ^ 0x5851f42d4c957f2dULL);
    std::vector<Edge> edges;
    const int nEdges = EdgeCount(lay);
    edges.reserve(size_t(nEdges));
    dInitial = SlotOf(-kEdgesBefore) == 0 ? 0.0 : 1.0;
    for (int k = 0; k < nEdges; ++k)
    {
        const int m = k - kEdgesBefore;
        const double j = DrawJitter(rng, lay);
        const double c = lay.dFirst + m * lay.dUI + j;
        const bool bRising = SlotOf(m) == 0;
        edges.push_back({c, bRising ? 0.0 : 1.0, bRising ? 1.0 : 0.0});
        if (c >= 0.0 && c <= lay.dEnd)
            spread.Add(SlotOf(m), pNominal[SlotOf(m)] + j);
    }
    return edges;
}

// Samples the train into folded runs of a fresh array; bComplement mirrors it
// about the middle.
void FillFolded(CChartPointDArray& w, EdgeTrain train, const DdrEyeParams& p, bool bComplement)
{
    const int n = p.nSamplesPerPeriod;
    const double dSwing = p.dHigh - p.dLow;
    w.SetSize(INT_PTR(n) * p.nPeriods);
    CChartPointD** pOut = w.GetData();
    for (int r = 0; r < p.nPeriods; ++r)
    {
        const double dStart = p.dPeriod * r;
        for (int i = 0; i < n; ++i)
        {
            const bool bLast = i == n - 1;
            const double x = bLast ? p.dPeriod : p.dPeriod * i / (n - 1);
            const double t = bLast ? p.dPeriod * (r + 1) : dStart + x;
            double v = train.At(t);
            if (bComplement)
                v = 1.0 - v;
            *pOut++ = new CChartPointD(x, p.dLow + dSwing * v);
        }
    }
}

void SetCommonAttributes(CChartPointDArray& w, const DdrEyeParams& p, const char* pszSignal)
{
    w.m_strNetName = p.strGroup + "_" + pszSignal;
    w.m_strName = w.m_strNetName + "_RX";
    w.m_nPinRole = 2;
    w.m_dPeriod = p.dPeriod;
    w.m_nReadCycle = p.nReadCycle;
}

void SetStrobeAttributes(CChartPointDArray& w, const DdrEyeParams& p, const char* pszSignal)
{
    SetCommonAttributes(w, p, pszSignal);
    w.m_nDataType = 0;
    w.m_dLevelLow = p.dLow;
    w.m_dLevelHigh = p.dHigh;
}
} // namespace

double DdrEye::RisingEdgeOffset(double dLevel) const
{
    double f = (dLevel - dLow) / (dHigh - dLow);
    f = std::max(0.0, std::min(1.0, f));
    return (std::acos(1.0 - 2.0 * f) / kPi - 0.5) * dRiseTime;
}

DdrEye GenerateDdrEye(const DdrEyeParams& params)
{
    DdrEyeParams p = params;
    p.nSamplesPerPeriod = std::max(2, p.nSamplesPerPeriod);
    p.nPeriods = std::max(0, p.nPeriods);

    DdrEye eye;
    eye.dPeriod = p.dPeriod;
    eye.dUnitInterval = p.dPeriod * 0.5;
    eye.dLow = p.dLow;
    eye.dHigh = p.dHigh;
    eye.dMid = (p.dLow + p.dHigh) * 0.5;
    eye.dRiseTime = std::max(0.0, std::min(p.dRiseTime, eye.dUnitInterval));

    const double dUI = eye.dUnitInterval;
    const double dData0 = PositiveMod(p.dDataEdgeFraction * p.dPeriod, p.dPeriod);
    const double dStrobe0 =
        PositiveMod(dData0 + (p.nReadCycle != 0 ? 0.0 : dUI * 0.5) + p.dStrobeSkew, p.dPeriod);
    for (int s = 0; s < 2; ++s)
    {
        eye.dDataEdge[s] = PositiveMod(dData0 + s * dUI, p.dPeriod);
        eye.dStrobeEdge[s] = PositiveMod(dStrobe0 + s * dUI, p.dPeriod);
    }

    // Clipping the jitter to 45% of the free time between edges keeps every
    // edge apart from its neighbours, which the edge train relies on.
    const double dEnd = p.dPeriod * p.nPeriods;
    const double dLimit = 0.45 * (dUI - eye.dRiseTime);
    const EdgeLayout dataLayout{dData0, dUI, p.dDataJitterRms, dLimit, dEnd};
    const EdgeLayout strobeLayout{dStrobe0, dUI, p.dStrobeJitterRms, dLimit, dEnd};

    SlotSpread dataSpread;
    double dDataInitial = 0.0;
    const std::vector<Edge> dataEdges =
        DataEdges(p, dataLayout, eye.dDataEdge, dDataInitial, dataSpread);
    dataSpread.Write(eye.dDataEdge, eye.dDataEdgeMin, eye.dDataEdgeMax);

    SlotSpread strobeSpread;
    double dStrobeInitial = 0.0;
    const std::vector<Edge> strobeEdges =
        StrobeEdges(p, strobeLayout, eye.dStrobeEdge, dStrobeInitial, strobeSpread);
    strobeSpread.Write(eye.dStrobeEdge, eye.dStrobeEdgeMin, eye.dStrobeEdgeMax);

    eye.pDQ = std::make_unique<CChartPointDArray>();
    FillFolded(*eye.pDQ, EdgeTrain(dataEdges, dDataInitial, eye.dRiseTime), p, false);
    CString strDQ;
    strDQ.Format("DQ%d", p.nBit);
    SetCommonAttributes(*eye.pDQ, p, strDQ);
    eye.pDQ->m_nDataType = 2;
    eye.pDQ->m_dEyeVref = -1.0;

    eye.pDQS = std::make_unique<CChartPointDArray>();
    FillFolded(*eye.pDQS, EdgeTrain(strobeEdges, dStrobeInitial, eye.dRiseTime), p, false);
    SetStrobeAttributes(*eye.pDQS, p, "DQS");
    if (p.bDifferential != 0)
    {
        eye.pDQSBar = std::make_unique<CChartPointDArray>();
        FillFolded(*eye.pDQSBar, EdgeTrain(strobeEdges, dStrobeInitial, eye.dRiseTime), p, true);
        SetStrobeAttributes(*eye.pDQSBar, p, "DQS#");
    }
    return eye;
}
} // namespace plotvane
