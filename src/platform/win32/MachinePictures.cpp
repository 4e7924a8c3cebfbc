#include "platform/Machine.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Windows.h"

// Needs Windows.h before it.
#include <ocidl.h>
#include <olectl.h>
#include <shlwapi.h>

namespace velmor::platform {
namespace {

// Null when there is not enough memory.
ComPtr<IStream> streamOf(std::string_view bytes) {
    const auto* const data = reinterpret_cast<const BYTE*>(bytes.data());
    return ComPtr<IStream>::attach(SHCreateMemStream(data, static_cast<UINT>(bytes.size())));
}

std::optional<std::string> bytesOf(IStream& stream) {
    STATSTG status{};
    const LARGE_INTEGER start{};
    if (FAILED(stream.Stat(&status, STATFLAG_NONAME)) || FAILED(stream.Seek(start, STREAM_SEEK_SET, nullptr))) {
        return std::nullopt;
    }
    std::string bytes(status.cbSize.LowPart, '\0');
    ULONG count = 0;
    if (FAILED(stream.Read(bytes.data(), status.cbSize.LowPart, &count)) || count != bytes.size()) return std::nullopt;
    return bytes;
}

// The system's picture objects, in the formats that it loads.
class MachinePictures : public Pictures {
public:
    explicit MachinePictures(Files& files) : files_(files) {}

    automation::ObjectRef load(std::u16string_view path) override {
        const auto bytes = files_.read(path);
        if (!bytes || bytes->empty()) return nullptr;
        const ComPtr<IStream> stream = streamOf(*bytes);
        if (!stream) return nullptr;
        // Not run mode: the picture keeps its original bytes, so that saving it loses nothing.
        ComPtr<IDispatch> picture;
        const auto size = static_cast<LONG>(bytes->size());
        if (FAILED(OleLoadPicture(stream.get(), size, FALSE, IID_IDispatch, picture.putVoid()))) return nullptr;
        return objectOf(picture.get());
    }

    bool save(const automation::ObjectRef& picture, std::u16string_view path) override {
        const auto dispatch = ComPtr<IDispatch>::attach(foreignOf(picture));
        const ComPtr<IPicture> standard = dispatch.as<IPicture>(IID_IPicture);
        if (!standard) return false;
        const ComPtr<IStream> stream = streamOf({});
        if (!stream) return false;
        LONG size = 0;
        if (FAILED(standard->SaveAsFile(stream.get(), TRUE, &size))) return false;
        const auto bytes = bytesOf(*stream.get());
        return bytes && !bytes->empty() && files_.write(path, *bytes);
    }

private:
    Files& files_;
};

}  // namespace

std::unique_ptr<Pictures> machinePictures(Files& files) {
    return std::make_unique<MachinePictures>(files);
}

}  // namespace velmor::platform
