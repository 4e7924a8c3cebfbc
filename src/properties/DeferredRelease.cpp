#include "properties/DeferredRelease.h"

#include <utility>
#include <vector>

namespace velmor {
namespace {

using Waiting = std::vector<std::shared_ptr<void>>;
thread_local Waiting* waiting = nullptr;

}  // namespace

void releaseFlat(std::shared_ptr<void> reference) {
    if (reference == nullptr) return;
    if (waiting != nullptr) {
        waiting->push_back(std::move(reference));
        return;
    }
    Waiting list;
    waiting = &list;
    reference.reset();
    while (!list.empty()) {
        const std::shared_ptr<void> next = std::move(list.back());
        list.pop_back();
    }
    waiting = nullptr;
}

}  // namespace velmor
