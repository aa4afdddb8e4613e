// A slab allocator for the fixed-size samples of waveforms. Blocks come from
// 1 MiB chunks aligned to their size, so a block finds its chunk by masking
// its address; a chunk whose blocks are all free goes back to the system
// (one empty chunk is kept to avoid thrashing). Not thread-safe: the
// component runs on the host's user-interface thread.
#pragma once

#include <cstddef>

namespace plotvane
{
class SamplePool
{
public:
    explicit SamplePool(std::size_t nBlockSize);
    ~SamplePool();
    SamplePool(const SamplePool&) = delete;
    SamplePool& operator=(const SamplePool&) = delete;

    void* Allocate();
    void Free(void* p) noexcept;

    // Bytes taken from the system, for the memory benchmarks.
    std::size_t ReservedBytes() const { return m_nChunks * kChunkSize; }
    std::size_t BlockSize() const { return m_nBlockSize; }

    static constexpr std::size_t kChunkSize = std::size_t(1) << 20;

private:
    struct Chunk;
    Chunk* NewChunk();
    void Unlink(Chunk* c) noexcept;
    void PushFront(Chunk* c) noexcept;

    std::size_t m_nBlockSize;
    std::size_t m_nBlocksPerChunk;
    Chunk* m_pPartial = nullptr; // chunks with at least one free block
    Chunk* m_pSpare = nullptr;   // one wholly free chunk kept for reuse
    std::size_t m_nChunks = 0;
};
} // namespace plotvane
