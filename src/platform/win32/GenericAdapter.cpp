#include <memory>
#include <utility>

#include "platform/win32/Face.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Failure.h"
#include "platform/win32/WideText.h"

namespace velmor::platform {
namespace {

// Of its class it tells the name.
class GenericAdapter final : public Face<IDispatch, IID_IDispatch> {
public:
    explicit GenericAdapter(automation::ObjectRef object) : object_(std::move(object)) {}

    automation::ObjectRef core() const override { return object_; }

    STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override try {
        if (!info) return E_POINTER;
        *info = nullptr;
        std::wstring name = wide(object_->typeName());
        ComPtr<ICreateTypeLib2> library;
        ComPtr<ICreateTypeInfo> made;
        check(CreateTypeLib2(SYS_WIN32, L"", library.put()));
        check(library->CreateTypeInfo(name.data(), TKIND_COCLASS, made.put()));
        return made->QueryInterface(IID_ITypeInfo, reinterpret_cast<void**>(info));
    } catch (...) {
        return raisedNow().code;
    }

private:
    MemberNames& members() noexcept override { return names_; }

    automation::ObjectRef object_;
    NamesOnDemand names_;
};

}  // namespace

IDispatch* adapterOf(const automation::ObjectRef& object) {
    if (!object) return nullptr;
    return FaceRegistry::instance().faceOf(*object, [&] { return std::make_unique<GenericAdapter>(object); });
}

}  // namespace velmor::platform
