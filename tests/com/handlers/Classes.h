#pragma once

#include <cstdint>

#include "HostObject.h"

namespace testhandlers {

// Handlers. Each records its calls and reports level 5, except makeLevel.
template <std::int32_t level>
ObjectRef makeLevel();    // answers "L3[COMMAND]", and the catalogue's calls with their arguments
ObjectRef makeFailing();  // raises 1234 from GetTagValue
ObjectRef makeProbe();    // uses the tag as handlers do
ObjectRef makeDigging();  // evaluates its own tag again: "+" and that result
ObjectRef makeActing();   // calls Act(tag) of the object "act" among the variables, then answers

// A host's objects. Each records its calls.
ObjectRef makeCollection();  // the members of a property collection that a tag needs, and no others
ObjectRef makeDatabase();    // a kvDatabase: returns items, defines the class "Account", takes events
ObjectRef makeAccount();     // opens with every identifier except 13, and changes 8 to 7
ObjectRef makeItem();        // a kvObjectItem of account 17

}  // namespace testhandlers
