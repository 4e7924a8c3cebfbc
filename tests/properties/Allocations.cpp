#include "properties/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int left = -1;  // negative: unlimited

}  // namespace

LimitedAllocations::LimitedAllocations(int count) noexcept {
    left = count;
}

LimitedAllocations::~LimitedAllocations() {
    left = -1;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (left == 0) return nullptr;
    if (left > 0) --left;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
