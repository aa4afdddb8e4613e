#include <plotvane/measure/ChartPointD.h>

#include <plotvane/measure/SamplePool.h>

#include <new>

// Under AddressSanitizer the samples come from the ordinary heap, so that a
// borrowed array used after its owner died is reported.
#if defined(__SANITIZE_ADDRESS__)
#define PLOTVANE_SAMPLE_POOL 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLOTVANE_SAMPLE_POOL 0
#endif
#endif
#ifndef PLOTVANE_SAMPLE_POOL
#define PLOTVANE_SAMPLE_POOL 1
#endif

namespace
{
#if PLOTVANE_SAMPLE_POOL
plotvane::SamplePool& Pool()
{
    // Never destroyed: samples of static waveforms may be freed after exit
    // handlers have run.
    static plotvane::SamplePool* pool = new plotvane::SamplePool(sizeof(CChartPointD));
    return *pool;
}
#endif
} // namespace

void* CChartPointD::operator new(std::size_t size)
{
#if PLOTVANE_SAMPLE_POOL
    if (size == sizeof(CChartPointD))
        return Pool().Allocate();
#endif
    return ::operator new(size);
}

void CChartPointD::operator delete(void* p, std::size_t size) noexcept
{
#if PLOTVANE_SAMPLE_POOL
    if (size == sizeof(CChartPointD))
    {
        Pool().Free(p);
        return;
    }
#endif
    ::operator delete(p, size);
}

void CChartPointD::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << m_nVersion << X << Y;
    else
    {
        int nVersion = 0;
        ar >> nVersion;
        if (nVersion == m_nVersion)
            ar >> X >> Y;
    }
}
