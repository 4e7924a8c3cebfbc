#include "platform/ClassTable.h"

#include <mutex>
#include <unordered_map>
#include <utility>

#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {
namespace {

// Filled at start, read from any apartment.
struct Table {
    std::mutex mutex;
    std::unordered_map<std::u16string, ObjectFactory> factories;
};

Table& table() {
    static Table* const instance = new Table;  // outlives all users at the end of the program
    return *instance;
}

ObjectFactory factoryOf(std::u16string_view className) {
    Table& classes = table();
    const std::scoped_lock lock(classes.mutex);
    const auto place = classes.factories.find(lowerCase(className));
    return place == classes.factories.end() ? nullptr : place->second;
}

}  // namespace

void registerClass(std::u16string_view className, ObjectFactory factory) {
    Table& classes = table();
    const std::scoped_lock lock(classes.mutex);
    classes.factories[lowerCase(className)] = std::move(factory);
}

automation::ObjectRef createRegisteredClass(std::u16string_view className) {
    const ObjectFactory factory = factoryOf(className);
    if (!factory) return nullptr;
    automation::ObjectRef object;
    try {
        object = factory();
    } catch (const Error& error) {
        raiseCannotCreate(className, error.description());
    } catch (const std::exception& error) {
        raiseCannotCreate(className, fromUtf8(error.what()));
    }
    if (!object) raiseCannotCreate(className, u"its factory made none");
    return object;
}

void raiseCannotCreate(std::u16string_view className, std::u16string_view reason) {
    std::u16string text = u"Cannot create object \"";
    text += className;
    text += u"\": ";
    text += reason;
    throw Error(429, kErrorSource, std::move(text));
}

bool isClassName(std::u16string_view className) {
    return !className.empty() && className.find_first_of(std::u16string_view(u"{}\\/:!\0", 7)) == className.npos;
}

}  // namespace velmor::platform
