#include "text/Error.h"

#include <utility>

#include "text/Encoding.h"

namespace velmor {

Error::Error(std::int32_t number, std::u16string source, std::u16string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)), what_(toUtf8(description_)) {}

}  // namespace velmor
