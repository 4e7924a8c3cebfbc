#pragma once

#include <string>
#include <string_view>

#include "automation/Object.h"

namespace testhandlers {

// What the handlers were asked, in order, for the test that evaluates them: the class
// "VelmorTest.Journal" with Text and Clear. One for the process.
void note(std::u16string_view what);

velmor::automation::ObjectRef makeJournal();

}  // namespace testhandlers
