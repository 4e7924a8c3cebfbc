#include "Replay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <fstream>
#include <map>

namespace host {

ComPtr<ITypeInfo> vtableForm(ITypeInfo& info) {
    constexpr UINT otherHalf = static_cast<UINT>(-1);
    ComPtr<ITypeInfo> vtable;
    HREFTYPE reference = 0;
    if (FAILED(info.GetRefTypeOfImplType(otherHalf, &reference))) return nullptr;
    EXPECT_HRESULT_SUCCEEDED(info.GetRefTypeInfo(reference, vtable.put()));
    return vtable;
}

std::wstring nameOf(ITypeInfo& info, MEMBERID member) {
    Text name;
    EXPECT_HRESULT_SUCCEEDED(info.GetDocumentation(member, name.put(), nullptr, nullptr, nullptr));
    return name.str();
}

std::wstring keyOf(ITypeInfo& info, const std::wstring& member, int kind) {
    const wchar_t* const suffix = kind == DISPATCH_PROPERTYPUT      ? L" let"
                                  : kind == DISPATCH_PROPERTYPUTREF ? L" set"
                                                                    : L"";
    return nameOf(info) + L"." + member + suffix;
}

namespace {

ComPtr<ITypeInfo> vtableOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    return SUCCEEDED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) ? vtableForm(*info.get()) : nullptr;
}

// Compilers pass 0 for an omitted argument without a default value.
void fillUp(ITypeInfo& info, const std::wstring& name, std::vector<Value>& arguments) {
    FUNCDESC* function = nullptr;
    for (UINT member = 0; SUCCEEDED(info.GetFuncDesc(member, &function)); ++member) {
        const bool found = nameOf(info, function->memid) == name;
        for (SHORT at = static_cast<SHORT>(arguments.size()); found && at < function->cParams; ++at) {
            const ELEMDESC& parameter = function->lprgelemdescParam[at];
            if (parameter.paramdesc.wParamFlags != (PARAMFLAG_FIN | PARAMFLAG_FOPT)) break;
            if (parameter.tdesc.vt == VT_VARIANT) break;
            arguments.emplace_back(0)->vt = parameter.tdesc.vt;
        }
        info.ReleaseFuncDesc(function);
    }
}

class Replay {
public:
    explicit Replay(Call way) : way_(way) {}

    void run(const std::wstring& line) {
        at_ = line.c_str();
        if (take(L"'") || take(L"Dim ") || take(L"Done") || atEnd()) return;
        statement();
        EXPECT_TRUE(atEnd()) << "not understood: " << at_;
    }
    const std::set<std::wstring>& called() const { return called_; }

private:
    // A variable, or a member of an object, with its arguments in parentheses.
    struct Place {
        ComPtr<IDispatch> object;
        std::wstring name;
        std::vector<Value> arguments;
    };

    void statement() {
        if (take(L"On Error ")) {
            raised_ = 0;
            forgives_ = take(L"Resume Next");
            if (!forgives_) take(L"GoTo 0");
        } else if (take(L"Check ")) {
            Value got = expression();
            EXPECT_TRUE(take(L","));
            EXPECT_EQ(describe(*got), expression()->bstrVal);
        } else {
            const bool isSet = take(L"Set ");
            Place to = place();
            if (take(L"=")) {
                assign(std::move(to), expression(), isSet ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT);
            } else {
                if (!atEnd()) to.arguments = arguments();
                valueOf(std::move(to));
            }
        }
    }

    void assign(Place to, Value value, WORD kind) {
        if (to.object) {
            to.arguments.push_back(std::move(value));
            member(std::move(to), kind);
        } else {
            variables_[to.name] = std::move(value);
        }
    }

    Value member(Place at, WORD kind) {
        if (const ComPtr<ITypeInfo> info = vtableOf(at.object.get())) {
            called_.insert(keyOf(*info.get(), at.name, kind));
        }
        Outcome outcome = way_(at.object.get(), at.name.c_str(), kind, std::move(at.arguments));
        if (forgives_) {
            raised_ = outcome.code == DISP_E_EXCEPTION ? outcome.raised & 0xFFFF : FAILED(outcome.code) ? 438 : 0;
        } else {
            EXPECT_EQ(outcome.code, S_OK) << at.name << ": " << outcome.description;
        }
        return Value(outcome.value.detach());
    }

    Value valueOf(Place at) {
        if (at.object) return member(std::move(at), DISPATCH_METHOD | DISPATCH_PROPERTYGET);
        if (const auto known = variables_.find(at.name); known != variables_.end())
            return Value::copyOf(*known->second);
        if (at.name == L"CreateObject") return Value(create(at.arguments[0]->bstrVal).get());
        if (at.name == L"String")
            return Value(std::wstring(at.arguments[0].to(VT_I4)->lVal, *at.arguments[1]->bstrVal).c_str());
        if (at.name == L"Len") return Value(static_cast<int>(text(*at.arguments[0]).size()));
        if (at.name == L"Left") return Value(text(*at.arguments[0]).substr(0, at.arguments[1]->iVal).c_str());
        if (at.name == L"CLng") return at.arguments[0].to(VT_I4);
        if (at.name == L"CDate") return at.arguments[0].to(VT_DATE);
        if (at.name == L"vbCrLf") return L"\r\n";
        if (at.name == L"True" || at.name == L"False") return at.name == L"True";
        if (at.name == L"Nothing") return static_cast<IDispatch*>(nullptr);
        ADD_FAILURE() << "no such variable: " << at.name;
        return {};
    }

    Place place() {
        Place at{nullptr, word(), {}};
        if (at.name == L"Err") {
            take(L".Clear") ? raised_ = 0 : take(L".Number");
            variables_[L"Err"] = Value(raised_);
            return at;
        }
        if (take(L"(")) at.arguments = arguments();
        while (take(L".")) {
            const Value object = valueOf(std::move(at));
            EXPECT_TRUE(object->vt == VT_DISPATCH && object->pdispVal) << "no object before " << at_;
            at = {ComPtr<IDispatch>(object->pdispVal), word(), {}};
            if (take(L"(")) at.arguments = arguments();
        }
        return at;
    }

    // Up to the closing parenthesis or the end of the line.
    std::vector<Value> arguments() {
        std::vector<Value> list;
        do {
            list.push_back(endsArgument() ? Value::missing() : argument());
        } while (take(L","));
        take(L")");
        return list;
    }

    // A variable alone is passed by reference.
    Value argument() {
        const wchar_t* const start = at_;
        const auto known = variables_.find(word());
        if (known != variables_.end() && endsArgument()) return Value::reference(*known->second);
        at_ = start;
        return expression();
    }

    Value expression() {
        Value left = joined();
        if (take(L"= ")) return Value(describe(*left) == describe(*joined()));
        if (take(L"Is ")) return Value(same(left->punkVal, joined()->punkVal));
        return left;
    }

    Value joined() {
        Value left = term();
        while (take(L"& ")) left = Value((text(*left) + text(*term())).c_str());
        return left;
    }

    Value term() {
        if (take(L"\"")) return literal();
        if (!std::iswdigit(*at_) && *at_ != L'-') return valueOf(place());
        const wchar_t* const start = at_;
        wchar_t* end = nullptr;
        const Value value(std::wcstod(start, &end));
        at_ = end;
        if (std::find(start, at_, L'.') != at_) return value.to(VT_R8);
        return value.to(std::abs(value->dblVal) < 32768 ? VT_I2 : VT_I4);
    }

    Value literal() {
        std::wstring text;
        for (; *at_ && (*at_ != L'"' || *++at_ == L'"'); ++at_) text += *at_;
        return text.c_str();
    }

    bool take(const wchar_t* token) {
        while (*at_ == L' ') ++at_;
        const std::size_t length = std::wcslen(token);
        if (std::wcsncmp(at_, token, length) != 0) return false;
        at_ += length;
        return true;
    }
    std::wstring word() {
        const wchar_t* const start = at_;
        while (std::iswalnum(*at_)) ++at_;
        return {start, at_};
    }
    bool atEnd() { return take(L"") && !*at_; }  // except for blanks
    bool endsArgument() { return atEnd() || *at_ == L',' || *at_ == L')'; }

    Call way_;
    std::map<std::wstring, Value> variables_;
    std::set<std::wstring> called_;
    const wchar_t* at_ = nullptr;
    int raised_ = 0;
    bool forgives_ = false;
};

}  // namespace

Outcome vtableCall(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments) {
    const ComPtr<ITypeInfo> info = vtableOf(object);
    if (!info) return call(object, name, flags, std::move(arguments));
    for (Value& argument : arguments) argument.refine();
    fillUp(*info.get(), name, arguments);
    return callWith(
        name, flags, std::move(arguments),
        [&](LPOLESTR* names, MEMBERID* id) { return info->GetIDsOfNames(names, 1, id); },
        [&](DISPID id, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception) {
            UINT faulty = 0;
            return info->Invoke(object, id, flags, parameters, result, exception, &faulty);
        });
}

std::set<std::wstring> replay(const std::string& script, Call way) {
    std::ifstream file(script);
    EXPECT_TRUE(file) << script;
    Replay replay(way);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        SCOPED_TRACE(script + ":" + std::to_string(++number) + (way == &call ? ", late" : ", vtable"));
        replay.run(std::wstring(line.begin(), line.end()));
    }
    return replay.called();
}

}  // namespace host
