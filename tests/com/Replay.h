#pragma once

#include <set>
#include <string>

#include "Host.h"

namespace host {

using Call = decltype(&call);

// As call(), but through the vtable, as the type library declares it; an object without one is called late.
Outcome vtableCall(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments);

// Of a dual interface, as the type library declares it; null for everything else.
ComPtr<ITypeInfo> vtableForm(ITypeInfo& info);
std::wstring nameOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL);
// "_kvTag.Name", "_kvTag.Name let", "_kvTag.Database set".
std::wstring keyOf(ITypeInfo& info, const std::wstring& member, int kind);

// Runs a script test as cscript does, but each call in the given way: variables, calls, lets and sets,
// CreateObject, CLng, CDate, String, & and Is; each Check has to hold. Gives the keys of
// the members that were called.
std::set<std::wstring> replay(const std::string& script, Call way);

}  // namespace host
