#pragma once

#include <memory>
#include <string>

namespace velmor {

class privStrCat;

// What privStrCat::InsertTagResult reads of a tag. The builder's length and the text must agree.
class ResultSource {
public:
    virtual ~ResultSource() = default;
    virtual std::shared_ptr<const privStrCat> resultBuilder() = 0;  // evaluates first if need be
    virtual std::u16string result() = 0;
};

}  // namespace velmor
