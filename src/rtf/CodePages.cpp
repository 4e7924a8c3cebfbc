#include "rtf/CodePages.h"

namespace velmor {
namespace {

#include "rtf/CodePages.inc"

}  // namespace

const CodePage* findCodePage(std::int32_t number) noexcept {
    for (const CodePage& page : codePages) {
        if (page.number == number) return &page;
    }
    return nullptr;
}

}  // namespace velmor
