#include "cli/render/Interruption.h"

#include <atomic>
#include <csignal>

namespace velmor::cli {
namespace {

std::atomic<bool> isRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void request(int signal) {
    isRequested.store(true, std::memory_order_relaxed);
    std::signal(signal, SIG_DFL);
}

#ifdef _WIN32
constexpr int signals[] = {SIGINT, SIGTERM, SIGBREAK};
#else
constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
#endif

}  // namespace

Interruption::Interruption() {
    isRequested = false;
    for (const int signal : signals) std::signal(signal, &request);
#ifndef _WIN32
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

Interruption::~Interruption() {
    for (const int signal : signals) std::signal(signal, SIG_DFL);
#ifndef _WIN32
    std::signal(SIGXFSZ, SIG_DFL);
#endif
}

bool Interruption::requested() noexcept {
    return isRequested.load(std::memory_order_relaxed);
}

}  // namespace velmor::cli
