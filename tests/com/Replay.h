#pragma once

#include <set>
#include <string>

#include "Host.h"

namespace host {

using Call = decltype(&call);

// As call(), but through the vtable, as the type library declares it; an object without one is called late-bound.
Outcome vtableCall(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments);

// The dual interface that the type library declares; null for other objects.
ComPtr<ITypeInfo> vtableForm(ITypeInfo& info);
std::wstring nameOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL);
// "_kvTag.Name", "_kvTag.Name let", "_kvTag.Database set".
std::wstring keyOf(ITypeInfo& info, const std::wstring& member, int kind);

// Runs a script test as cscript does, but each call in the given way: variables, calls, lets and sets,
// CreateObject, CLng, CDate, String, & and Is; each Check must hold. Returns the keys of
// the called members.
std::set<std::wstring> replay(const std::string& script, Call way);

}  // namespace host
