// A host of the component where it is not registered. Its manifest names the component as a dependency, or it makes an
// activation context of a manifest that it is given:
//     unregistered_host
//     plain_host MANIFEST
// It evaluates a template, also from another apartment, and prints both results.

#include <cstdio>
#include <string>
#include <thread>

#include "kvVelmor3.h"
#include "platform/win32/Apartment.h"
#include "platform/win32/ComPtr.h"

using velmor::platform::Apartment;
using velmor::platform::ComPtr;

namespace {

// The classes of a manifest, for the thread that makes it; without a path, those of the program.
class ActivationContext {
public:
    explicit ActivationContext(const char* path) {
        if (!path) return;
        ACTCTXA manifest{};
        manifest.cbSize = sizeof manifest;
        manifest.lpSource = path;
        context_ = CreateActCtxA(&manifest);
        if (context_ == INVALID_HANDLE_VALUE || !ActivateActCtx(context_, &cookie_)) std::puts("no activation context");
    }
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext() {
        if (cookie_) DeactivateActCtx(0, cookie_);
        if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
    }

private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

void printResult(_kvTag* tag, const wchar_t* value) {
    BSTR text = SysAllocString(value), result = nullptr;
    const HRESULT code = tag ? tag->put_Value(text) : E_NOINTERFACE;
    if (FAILED(code) || FAILED(tag->get_Result(&result))) std::printf("%08lx\n", static_cast<unsigned long>(code));
    std::printf("%ls\n", result ? result : L"no result");
    SysFreeString(text);
    SysFreeString(result);
}

ComPtr<_kvTag> newTag() {
    CLSID id{};
    ComPtr<_kvTag> tag;
    if (FAILED(CLSIDFromProgID(L"kvVelmor3.kvTag", &id))) std::puts("no class");
    CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID__kvTag, tag.putVoid());
    return tag;
}

void evaluateElsewhere(IStream* stream, const char* manifest) {
    const Apartment apartment;
    const ActivationContext context(manifest);
    ComPtr<_kvTag> proxy;
    CoGetInterfaceAndReleaseStream(stream, IID__kvTag, proxy.putVoid());
    printResult(proxy.get(), L"There: <KV:TAG>@DLL VERSION:</KV>");
}

// Until the thread ends; the calls of its proxies arrive as messages.
void serve(HANDLE thread) {
    while (MsgWaitForMultipleObjects(1, &thread, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
}

}  // namespace

int main(int count, char** arguments) {
    const char* const manifest = count > 1 ? arguments[1] : nullptr;
    const Apartment apartment;
    const ActivationContext context(manifest);
    const ComPtr<_kvTag> tag = newTag();
    printResult(tag.get(), L"Here: <KV:TAG>@DLL VERSION:</KV>");
    IStream* stream = nullptr;
    if (!tag || FAILED(CoMarshalInterThreadInterfaceInStream(IID__kvTag, tag.get(), &stream))) return 1;
    HANDLE ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread other([&] {
        evaluateElsewhere(stream, manifest);
        SetEvent(ended);
    });
    serve(ended);
    other.join();
    CloseHandle(ended);
    return 0;
}
