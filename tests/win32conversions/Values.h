#pragma once

#include <vector>

#include "automation/Variant.h"

// The values that are converted to every type, and compared with a few others.
namespace velmor::automation {

std::vector<Variant> numbers();
std::vector<Variant> dates();
std::vector<Variant> numberTexts();
std::vector<Variant> dateTexts();

}  // namespace velmor::automation
