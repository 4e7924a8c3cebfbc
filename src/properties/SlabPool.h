#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace velmor {

// Memory for many objects of one kind that are made together, such as the properties of one text:
// they lie side by side in slabs, and a slab is freed when the last object in it goes. One object
// that outlives the others keeps a slab of 32. For std::allocate_shared; from one thread.
class SlabPool {
public:
    // The allocator of one object. The first one on a slab decides how large its places are.
    template <class T>
    class Allocator;

    SlabPool() = default;
    ~SlabPool() { release(slab_); }
    SlabPool(const SlabPool&) = delete;
    SlabPool& operator=(const SlabPool&) = delete;

    template <class T>
    Allocator<T> next() {
        if (slab_ == nullptr || slab_->used == kPlaces) {
            Slab* const fresh = new Slab;
            release(slab_);
            slab_ = fresh;
        }
        return Allocator<T>(slab_);
    }

private:
    static constexpr std::size_t kPlaces = 32;

    struct Slab {
        std::unique_ptr<std::byte[]> places;
        std::size_t used = 0;
        std::size_t users = 1;  // the objects, and the pool while it fills the slab
    };

    static void release(Slab* slab) noexcept {
        if (slab != nullptr && --slab->users == 0) delete slab;
    }

    Slab* slab_ = nullptr;
};

template <class T>
class SlabPool::Allocator {
public:
    using value_type = T;

    template <class Other>
    Allocator(const Allocator<Other>& other) noexcept : slab_(other.slab_) {}

    T* allocate(std::size_t /*one*/) {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        if (slab_->places == nullptr) slab_->places.reset(new std::byte[kPlaces * sizeof(T)]);
        ++slab_->users;
        return reinterpret_cast<T*>(slab_->places.get() + sizeof(T) * slab_->used++);
    }
    void deallocate(T* /*place*/, std::size_t /*one*/) noexcept { release(slab_); }

    template <class Other>
    bool operator==(const Allocator<Other>& other) const noexcept {
        return slab_ == other.slab_;
    }

private:
    friend class SlabPool;
    template <class Other>
    friend class Allocator;

    explicit Allocator(Slab* slab) noexcept : slab_(slab) {}

    Slab* slab_;
};

}  // namespace velmor
