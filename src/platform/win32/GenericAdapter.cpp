#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "automation/Errors.h"
#include "platform/win32/Face.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Failure.h"
#include "platform/win32/WideText.h"
#include "text/Compare.h"

namespace velmor::platform {
namespace {

// Identifiers are given out on demand, 1, 2, ...: the object answers for its members only when it is called. 0 is the
// default member's. The names of parameters are not known. Of its class it tells the name.
class GenericAdapter final : public Face<IDispatch> {
public:
    explicit GenericAdapter(automation::ObjectRef object) : object_(std::move(object)) {}

    automation::ObjectRef core() const override { return object_; }

    STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return outcomeOf([&] {
            std::wstring name = wide(object_->typeName());
            ComPtr<ICreateTypeLib2> library;
            ComPtr<ICreateTypeInfo> made;
            check(CreateTypeLib2(SYS_WIN32, L"", library.put()));
            check(library->CreateTypeInfo(name.data(), TKIND_COCLASS, made.put()));
            check(made->QueryInterface(IID_ITypeInfo, reinterpret_cast<void**>(info)));
        });
    }

private:
    DISPID identifierOf(std::u16string_view name) override {
        std::u16string key = lowerCase(name);
        if (const auto known = identifiers_.find(key); known != identifiers_.end()) return known->second;
        names_.emplace_back(name);
        return identifiers_.emplace(std::move(key), static_cast<DISPID>(names_.size())).first->second;
    }
    DISPID parameterOf(DISPID, std::u16string_view) const override { return DISPID_UNKNOWN; }
    bool hasParameter(DISPID, DISPID) const override { return false; }
    std::u16string_view nameOf(DISPID member) const override {
        if (member == DISPID_VALUE) return {};
        if (member == DISPID_NEWENUM) return u"NewEnum";
        if (member < 1 || static_cast<std::size_t>(member) > names_.size()) automation::raiseNoSuchMember({});
        return names_[static_cast<std::size_t>(member) - 1];
    }

    automation::ObjectRef object_;
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by lower-case name
    std::vector<std::u16string> names_;                       // by identifier, less 1
};

}  // namespace

IDispatch* adapterOf(const automation::ObjectRef& object) {
    return liveFaceOf(*object, [&] { return std::make_unique<GenericAdapter>(object); });
}

}  // namespace velmor::platform
