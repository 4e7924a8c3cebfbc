#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/Machine.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {
namespace {

constexpr DWORD largestStep = 1 << 26;
constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class File {
public:
    File(const std::wstring& path, DWORD access, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL)
        : handle_(CreateFileW(path.c_str(), access, shareAll, nullptr, disposition, flags, nullptr)) {}
    ~File() { close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }
    bool isOnDisk() const { return GetFileType(handle_) == FILE_TYPE_DISK; }
    bool close() {
        const HANDLE handle = std::exchange(handle_, INVALID_HANDLE_VALUE);
        return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != FALSE;
    }

    bool writeAll(std::string_view bytes) {
        while (!bytes.empty()) {
            const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), largestStep));
            DWORD written = 0;
            if (!WriteFile(handle_, bytes.data(), step, &written, nullptr) || written == 0) return false;
            bytes.remove_prefix(written);
        }
        return true;
    }

    // The result may be short if the file shrinks meanwhile.
    bool readAll(std::string& bytes) {
        std::size_t filled = 0;
        while (filled < bytes.size()) {
            const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - filled, largestStep));
            DWORD count = 0;
            if (!ReadFile(handle_, bytes.data() + filled, step, &count, nullptr)) return false;
            if (count == 0) break;
            filled += count;
        }
        bytes.resize(filled);
        return true;
    }

private:
    HANDLE handle_;
};

// Empty for an invalid path.
std::wstring nativePath(std::u16string_view path) {
    return holdsZero(path) ? std::wstring() : wide(path);
}

bool isDevice(const std::wstring& path) {
    const File file(path, GENERIC_WRITE, OPEN_EXISTING);
    return file && !file.isOnDisk();
}

// While it is set, the system removes the file at the end of the program, however it ends.
bool removeWhenClosed(const File& file, bool set) {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = set ? TRUE : FALSE;
    return SetFileInformationByHandle(file.get(), FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

std::wstring freeNameBeside(const std::wstring& path) {
    const std::wstring stem = path + L"." + std::to_wstring(GetCurrentProcessId()) + L"-";
    for (int attempt = 0;; ++attempt) {
        std::wstring name = stem + std::to_wstring(attempt) + L".tmp";
        if (attempt == 100 || GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES) return name;
    }
}

// To a device, or to a file: a new one in the same folder takes the name when everything is on the disk.
class SystemWriter final : public FileWriter {
public:
    SystemWriter(std::wstring path, bool isDevice)
        : path_(std::move(path)),
          temporary_(isDevice ? std::wstring() : freeNameBeside(path_)),
          file_(isDevice ? File(path_, GENERIC_WRITE, OPEN_EXISTING)
                         : File(temporary_, GENERIC_WRITE | DELETE, CREATE_NEW)),
          isThere_(file_ && !isDevice),
          isRemoved_(isThere_ && removeWhenClosed(file_, true)) {}  // not every file system can
    ~SystemWriter() override {
        const DWORD reason = GetLastError();
        file_.close();
        if (isThere_) DeleteFileW(temporary_.c_str());
        SetLastError(reason);
    }

    explicit operator bool() const { return static_cast<bool>(file_); }
    bool write(std::string_view bytes) override { return isGood_ = isGood_ && file_.writeAll(bytes); }
    bool finish() override {
        if (temporary_.empty()) return isGood_ && file_.close();
        if (!isGood_ || !FlushFileBuffers(file_.get())) return false;
        if ((isRemoved_ && !removeWhenClosed(file_, false)) || !file_.close()) return false;
        constexpr DWORD how = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        isThere_ = MoveFileExW(temporary_.c_str(), path_.c_str(), how) == FALSE;
        return !isThere_;
    }

private:
    const std::wstring path_;
    const std::wstring temporary_;
    File file_;
    bool isThere_;  // the temporary file
    const bool isRemoved_;
    bool isGood_ = true;
};

bool hasAttribute(const std::wstring& path, DWORD attribute) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & attribute) != 0;
}

// Not every system refuses to rename over one.
bool isReadOnly(const std::wstring& path) {
    const bool refused = hasAttribute(path, FILE_ATTRIBUTE_READONLY);
    if (refused) SetLastError(ERROR_ACCESS_DENIED);
    return refused;
}

class MachineFiles : public Files {
public:
    bool exists(std::u16string_view path) const override {
        const DWORD attributes = GetFileAttributesW(nativePath(path).c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    }

    std::optional<std::string> read(std::u16string_view path) const override {
        File file(nativePath(path), GENERIC_READ, OPEN_EXISTING);
        LARGE_INTEGER size{};
        if (!file || !file.isOnDisk() || !GetFileSizeEx(file.get(), &size)) return std::nullopt;
        if (static_cast<std::uint64_t>(size.QuadPart) > largestFile) return std::nullopt;
        std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
        return file.readAll(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
    }

    // A device (NUL, CON) is written to directly.
    std::unique_ptr<FileWriter> writer(std::u16string_view path) override {
        const std::wstring native = nativePath(path);
        if (native.empty() || hasAttribute(native, FILE_ATTRIBUTE_DIRECTORY) || isReadOnly(native)) return nullptr;
        auto writer = std::make_unique<SystemWriter>(native, isDevice(native));
        return *writer ? std::move(writer) : nullptr;
    }

    bool create(std::u16string_view path) override {
        return static_cast<bool>(File(nativePath(path), GENERIC_WRITE, CREATE_NEW));
    }

    bool append(std::u16string_view path, std::string_view bytes) override {
        File file(nativePath(path), FILE_APPEND_DATA, OPEN_ALWAYS);
        return file && file.writeAll(bytes) && file.close();
    }

    bool remove(std::u16string_view path) override { return DeleteFileW(nativePath(path).c_str()) != FALSE; }

    std::optional<std::u16string> realPath(std::u16string_view path) const override {
        constexpr std::wstring_view prefix = L"\\\\?\\";
        const File file(nativePath(path), 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);  // or a folder
        if (!file) return std::nullopt;
        std::wstring found(32768, L'\0');  // the longest path there is
        found.resize(GetFinalPathNameByHandleW(file.get(), found.data(), static_cast<DWORD>(found.size()), 0));
        if (found.empty()) return std::nullopt;
        return fromWide(found.starts_with(prefix) ? std::wstring_view(found).substr(prefix.size()) : found);
    }

    bool makeFolder(std::u16string_view path) override {
        const std::filesystem::path native = nativePath(path);
        std::error_code failure;
        std::filesystem::create_directories(native, failure);
        return std::filesystem::is_directory(native, failure);
    }
};

}  // namespace

std::unique_ptr<Files> machineFiles() {
    return std::make_unique<MachineFiles>();
}

}  // namespace velmor::platform
