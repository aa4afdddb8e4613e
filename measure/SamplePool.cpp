#include <plotvane/measure/SamplePool.h>

#include <cstdint>
#include <cstdlib>
#include <new>

namespace plotvane
{
struct SamplePool::Chunk
{
    Chunk* pPrev;
    Chunk* pNext;
    void* pFree;         // freed blocks, linked through their first word
    std::size_t nUsed;   // live blocks
    std::size_t nBumped; // blocks handed out from the untouched tail so far
    bool bListed;        // in the partial list
};

namespace
{
constexpr std::size_t kHeader = (sizeof(void*) * 4 + sizeof(std::size_t) * 2 + 63) / 64 * 64;
}

SamplePool::SamplePool(std::size_t nBlockSize)
    : m_nBlockSize(nBlockSize < sizeof(void*) ? sizeof(void*) : (nBlockSize + 7) / 8 * 8),
      m_nBlocksPerChunk((kChunkSize - kHeader) / m_nBlockSize)
{
}

// Chunks still holding live blocks at exit are left to the system: the
// samples of static waveforms may outlive the pool.
SamplePool::~SamplePool()
{
    if (m_pSpare)
        std::free(m_pSpare);
}

SamplePool::Chunk* SamplePool::NewChunk()
{
    void* mem = std::aligned_alloc(kChunkSize, kChunkSize);
    if (!mem)
        throw std::bad_alloc();
    ++m_nChunks;
    Chunk* c = static_cast<Chunk*>(mem);
    *c = Chunk{nullptr, nullptr, nullptr, 0, 0, false};
    return c;
}

void SamplePool::PushFront(Chunk* c) noexcept
{
    c->pPrev = nullptr;
    c->pNext = m_pPartial;
    if (m_pPartial)
        m_pPartial->pPrev = c;
    m_pPartial = c;
    c->bListed = true;
}

void SamplePool::Unlink(Chunk* c) noexcept
{
    if (c->pPrev)
        c->pPrev->pNext = c->pNext;
    else
        m_pPartial = c->pNext;
    if (c->pNext)
        c->pNext->pPrev = c->pPrev;
    c->pPrev = c->pNext = nullptr;
    c->bListed = false;
}

void* SamplePool::Allocate()
{
    Chunk* c = m_pPartial;
    if (!c)
    {
        c = m_pSpare ? m_pSpare : NewChunk();
        m_pSpare = nullptr;
        PushFront(c);
    }
    void* p;
    if (c->pFree)
    {
        p = c->pFree;
        c->pFree = *static_cast<void**>(p);
    }
    else
        p = reinterpret_cast<char*>(c) + kHeader + c->nBumped++ * m_nBlockSize;
    ++c->nUsed;
    if (!c->pFree && c->nBumped == m_nBlocksPerChunk)
        Unlink(c);
    return p;
}

void SamplePool::Free(void* p) noexcept
{
    if (!p)
        return;
    Chunk* c = reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(p) & ~(kChunkSize - 1));
    *static_cast<void**>(p) = c->pFree;
    c->pFree = p;
    --c->nUsed;
    if (!c->bListed)
        PushFront(c);
    if (c->nUsed == 0)
    {
        Unlink(c);
        *c = Chunk{nullptr, nullptr, nullptr, 0, 0, false};
        if (m_pSpare)
        {
            std::free(c);
            --m_nChunks;
        }
        else
            m_pSpare = c;
    }
}
} // namespace plotvane
