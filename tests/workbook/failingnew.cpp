#include "failingnew.h"

#include <cstdlib>
#include <new>

namespace
{

constexpr int off = -1; // what counting down to a failure ends at

thread_local int left = off;
thread_local bool failed = false;
thread_local int live = 0;

void *allocate(std::size_t bytes)
{
    if (left != off && left-- == 0) {
        failed = true;
        return nullptr;
    }
    void *const block = std::malloc(bytes);
    live += block != nullptr ? 1 : 0;
    return block;
}

void release(void *block)
{
    live -= block != nullptr ? 1 : 0;
    std::free(block);
}

} // namespace

void FailingNew::failAfter(int allocations)
{
    failed = false;
    left = allocations;
}

bool FailingNew::stop()
{
    left = off;
    return failed;
}

int FailingNew::liveBlocks()
{
    return live;
}

void *operator new(std::size_t bytes)
{
    void *const block = allocate(bytes);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void *operator new(std::size_t bytes, const std::nothrow_t & /*tag*/) noexcept
{
    return allocate(bytes);
}

void operator delete(void *block) noexcept
{
    release(block);
}

void operator delete(void *block, std::size_t /*bytes*/) noexcept
{
    release(block);
}
