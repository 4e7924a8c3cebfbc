#include "platform/win32/MachinePictures.h"

#include <cstring>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Windows.h"

// Needs Windows.h before it.
#include <ocidl.h>
#include <olectl.h>

namespace velmor::platform {
namespace {

// Null when there is not enough memory.
ComPtr<IStream> streamOf(std::string_view bytes) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.empty() ? 1 : bytes.size());
    if (!memory) return nullptr;
    if (void* place = GlobalLock(memory)) {
        std::memcpy(place, bytes.data(), bytes.size());
        GlobalUnlock(memory);
    }
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(memory, TRUE, stream.put()))) {
        GlobalFree(memory);
        return nullptr;
    }
    return stream;
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

}  // namespace

automation::ObjectRef MachinePictures::load(std::u16string_view path) {
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

bool MachinePictures::save(const automation::ObjectRef& picture, std::u16string_view path) {
    const auto dispatch = ComPtr<IDispatch>::attach(foreignOf(picture));
    const ComPtr<IPicture> standard = dispatch.as<IPicture>(IID_IPicture);
    if (!standard) return false;
    const ComPtr<IStream> stream = streamOf({});
    const ULARGE_INTEGER empty{};
    if (!stream || FAILED(stream->SetSize(empty))) return false;
    LONG size = 0;
    if (FAILED(standard->SaveAsFile(stream.get(), TRUE, &size))) return false;
    const auto bytes = bytesOf(*stream.get());
    return bytes && !bytes->empty() && files_.write(path, *bytes);
}

}  // namespace velmor::platform
