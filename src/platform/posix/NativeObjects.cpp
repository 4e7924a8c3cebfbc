#include <dlfcn.h>

#include <exception>
#include <utility>

#include "platform/Machine.h"
#include "platform/NativeObject.h"
#include "platform/posix/HandlerLibrary.h"
#include "platform/posix/PosixPaths.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

constexpr std::u16string_view classes = u"SOFTWARE\\Classes\\";
constexpr std::u16string_view windowsEnding = u".dll";

// The possible file names of a library.
std::vector<std::u16string> namesFor(std::u16string_view registered) {
    const std::u16string name(registered.substr(registered.find_last_of(u"\\/") + 1));
    if (name.size() <= windowsEnding.size()) return {name};
    const std::size_t stemLength = name.size() - windowsEnding.size();
    if (!equalIgnoringCase(std::u16string_view(name).substr(stemLength), windowsEnding)) return {name};
    const std::u16string stem = name.substr(0, stemLength) + u".so";
    return {stem, u"lib" + stem};
}

std::u16string_view reasonFor(int outcome) {
    if (outcome == velmorUnknownClass) return u"the library does not know the class";
    if (outcome == velmorOtherAbi) return u"the library was built for another version";
    return outcome == velmorCreated ? u"the library made no object" : u"the library could not make it";
}

std::u16string loaderMessage() {
    const char* message = dlerror();
    return message ? fromUtf8(message) : u"the library cannot be loaded";
}

// Classes of shared libraries: handlers behind the C interface of velmor/handler_abi.h, and objects as NativeObject.h
// describes. Each object's class is looked up anew; libraries stay loaded. For any thread.
class NativeObjects : public Objects {
public:
    NativeObjects(const Registry& registry, std::vector<std::u16string> folders)
        : registry_(registry), folders_(std::move(folders)) {}

    automation::ObjectRef create(std::u16string_view className) override {
        requireClassName(className);
        void* const library = libraryFor(className);
        if (void* const handlers = dlsym(library, VELMOR_HANDLER_ENTRY)) {
            return createHandler(*reinterpret_cast<VelmorHandlerEntry*>(handlers), className);
        }
        void* const objects = dlsym(library, "velmorCreateObject");
        if (objects == nullptr) raiseCannotCreate(className, u"the library has no handlers");
        return createObject(*reinterpret_cast<VelmorCreateObject*>(objects), className);
    }

private:
    static automation::ObjectRef createHandler(VelmorHandlerEntry& entry, std::u16string_view className) {
        const VelmorHandlerLibrary* const library = entry(VELMOR_HANDLER_ABI);
        if (library == nullptr || library->version != VELMOR_HANDLER_ABI) {
            raiseCannotCreate(className, reasonFor(velmorOtherAbi));
        }
        automation::ObjectRef handler = handlerOf(*library, className);
        if (!handler) raiseCannotCreate(className, reasonFor(velmorUnknownClass));
        return handler;
    }

    static automation::ObjectRef createObject(VelmorCreateObject& entry, std::u16string_view className) {
        automation::ObjectRef object;
        int outcome = velmorCreationFailed;
        try {
            outcome = entry(velmorNativeAbi, className.data(), className.size(), &object);
        } catch (const std::exception& error) {
            raiseCannotCreate(className, fromUtf8(error.what()));
        }
        if (outcome != velmorCreated || !object) raiseCannotCreate(className, reasonFor(outcome));
        return object;
    }

    void* libraryFor(std::u16string_view className) const {
        const std::u16string registered = registeredLibrary(className);
        if (registered.empty()) raiseCannotCreate(className, u"the class is not registered");
        const std::string path = findLibrary(registered);
        if (path.empty()) raiseCannotCreate(className, u"there is no library for \"" + registered + u"\"");
        // Loading the same file again gives the same library.
        void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) raiseCannotCreate(className, loaderMessage());
        return library;
    }

    // Empty when it is not registered.
    std::u16string registeredLibrary(std::u16string_view className) const {
        std::u16string key(classes);
        key += className;
        if (auto library = registry_.value(key, u"NativeLibrary")) return std::move(*library);
        const auto identifier = registry_.value(key + u"\\CLSID", u"");
        if (!identifier || identifier->empty()) return {};
        key = classes;
        key += u"CLSID\\" + *identifier + u"\\InprocServer32";
        return registry_.value(key, u"").value_or(std::u16string());
    }

    // Empty when it is not found.
    std::string findLibrary(std::u16string_view registered) const {
        if (registered.starts_with(u'/')) {
            const auto path = pathToRead(registered);
            if (path && isRegularFile(*path)) return *path;
        }
        for (const std::u16string& folder : folders_) {
            // A relative path is tried as a whole first, so that a library may be in a subfolder.
            std::vector<std::u16string> names = namesFor(registered);
            if (!registered.starts_with(u'/')) names.insert(names.begin(), std::u16string(registered));
            for (const std::u16string& name : names) {
                const auto path = pathToRead(folder + u"/" + name);
                if (path && isRegularFile(*path) && !path->ends_with(".dll")) return *path;
            }
        }
        return {};
    }

    const Registry& registry_;
    std::vector<std::u16string> folders_;
};

}  // namespace

std::unique_ptr<Objects> machineObjects(const Registry& registry, std::vector<std::u16string> folders) {
    return std::make_unique<NativeObjects>(registry, std::move(folders));
}

}  // namespace velmor::platform
