#pragma once

#include <cstdlib>
#include <new>

// Replaces operator new for a test program: include it in one file of the program.

namespace velmor::test {

inline thread_local int allocationsLeft = -1;  // before they fail; negative: none does
inline thread_local bool allocationFailed = false, failsOnce = false;

// During its lifetime this thread's allocations fail after so many, or one of them does.
struct LimitedAllocations {
    explicit LimitedAllocations(int count, bool once = false) noexcept {
        allocationsLeft = count, allocationFailed = false, failsOnce = once;
    }
    ~LimitedAllocations() { allocationsLeft = -1; }
    LimitedAllocations(const LimitedAllocations&) = delete;
    LimitedAllocations& operator=(const LimitedAllocations&) = delete;
};

}  // namespace velmor::test

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    using namespace velmor::test;
    if (allocationsLeft == 0) {
        allocationFailed = true;
        if (failsOnce) allocationsLeft = -1;
        return nullptr;
    }
    if (allocationsLeft > 0) --allocationsLeft;
    return std::malloc(size == 0 ? 1 : size);
}
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
