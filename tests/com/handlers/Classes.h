#pragma once

#include <cstdint>

#include "HostObject.h"

namespace testhandlers {

// Handlers. Each notes its calls, and reports level 5 unless it says otherwise.
template <std::int32_t level>
ObjectRef makeLevel();           // answers "L3[COMMAND]", and questions of the catalogue with its arguments
ObjectRef makeFailing();         // raises 1234 from GetTagValue
ObjectRef makeFailingDispose();  // answers, then raises from Dispose
ObjectRef makeReentrant();       // does to its own tag what a handler should not
ObjectRef makeProbe();           // uses the tag as handlers do
ObjectRef makeNesting();         // answers with a tag
ObjectRef makeRtf();             // answers with an RTF fragment
ObjectRef makeEcho();            // answers with its own tag
ObjectRef makeDigging();         // evaluates its own tag once more, "+" before what that gives
ObjectRef makeActing();          // calls Act(tag) of the object "act" among the variables, then answers

// A host's objects. Each notes what is done to it.
ObjectRef makeCollection();   // the members of a property collection that a tag needs, and no others
ObjectRef makeDatabase();     // a kvDatabase: hands out items, defines the class "Account", takes events
ObjectRef makeAccount();      // opens with every identifier but 13, and makes 7 of 8
ObjectRef makeItem();         // a kvObjectItem of account 17
ObjectRef makeBadDatabase();  // all members answer with what was let to Answer: "raise", "array", "error", ...
ObjectRef makeBadAccount();   // and so does its OpenItem
ObjectRef makeBare();         // has no member

}  // namespace testhandlers
