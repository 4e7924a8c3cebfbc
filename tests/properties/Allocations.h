#pragma once

// During its lifetime this thread's allocations fail after so many.
class LimitedAllocations {
public:
    explicit LimitedAllocations(int count) noexcept;
    ~LimitedAllocations();
    LimitedAllocations(const LimitedAllocations&) = delete;
    LimitedAllocations& operator=(const LimitedAllocations&) = delete;
};
