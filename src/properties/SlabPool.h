#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace velmor {

// Memory for many objects of one kind that are made together, such as the properties of one text,
// and for short texts of theirs: they lie side by side in slabs, and a slab is freed when the last
// object in it goes. One object that outlives the others keeps a slab of at most 32. For
// std::allocate_shared; from one thread.
class SlabPool {
public:
    // The allocator of one object.
    template <class T>
    class Allocator;

    SlabPool() = default;
    ~SlabPool() { release(slab_); }
    SlabPool(const SlabPool&) = delete;
    SlabPool& operator=(const SlabPool&) = delete;

    template <class T>
    Allocator<T> next() {
        if (slab_ == nullptr || slab_->used == slab_->places) {
            Slab* const fresh = new Slab;
            if (slab_ != nullptr) fresh->places = std::min(slab_->places * 2, kMostPlaces);
            release(slab_);
            slab_ = fresh;
        }
        return Allocator<T>(slab_);
    }

    // A copy that lives as long as the object made last. Null when the slab has no room for it.
    const char16_t* keep(std::u16string_view text) noexcept {
        if (slab_ == nullptr || text.size() > slab_->textLeft()) return nullptr;
        char16_t* const copy = slab_->text;
        slab_->text = std::copy(text.begin(), text.end(), copy);
        return copy;
    }

private:
    // Small collections are many; they do not pay for large ones.
    static constexpr std::size_t kFirstPlaces = 4, kMostPlaces = 32;
    static constexpr std::size_t kTextUnits = 40;  // for each object

    struct Slab {
        std::unique_ptr<std::byte[]> memory;  // the objects, then their texts
        std::size_t places = kFirstPlaces;
        std::size_t used = 0;
        std::size_t users = 1;  // the objects, and the pool while it fills the slab
        char16_t* text = nullptr;
        char16_t* textEnd = nullptr;

        std::size_t textLeft() const noexcept { return static_cast<std::size_t>(textEnd - text); }

        // The first object decides how large the places are.
        void make(std::size_t size) {
            memory.reset(new std::byte[places * (size + kTextUnits * sizeof(char16_t))]);
            text = reinterpret_cast<char16_t*>(memory.get() + places * size);
            textEnd = text + places * kTextUnits;
        }
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
        if (slab_->memory == nullptr) slab_->make(sizeof(T));
        ++slab_->users;
        return reinterpret_cast<T*>(slab_->memory.get() + sizeof(T) * slab_->used++);
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
