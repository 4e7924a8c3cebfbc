#include "cli/TapedServices.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/RecordValues.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

using automation::ObjectRef;
using View = std::u16string_view;

// --- the forms of answers ---

Json formOf(bool value) {
    return value;
}
Json formOf(double value) {
    return numberForm(value);
}
Json formOf(automation::Date value) {
    return numberForm(value.days);
}
Json formOf(char16_t value) {
    return static_cast<unsigned>(value);
}
Json formOf(const std::u16string& value) {
    return textForm(value);
}
Json formOf(const std::string& value) {
    return bytesForm(value);
}
template <class T>
Json formOf(const std::optional<T>& value) {
    return value ? formOf(*value) : Json();
}
Json formOf(const std::vector<std::u16string>& values) {
    Json form = Json::array();
    for (const std::u16string& value : values) form.push_back(formOf(value));
    return form;
}

void take(const Json& form, bool& value) {
    value = form.get<bool>();
}
void take(const Json& form, double& value) {
    value = numberOf(form);
}
void take(const Json& form, automation::Date& value) {
    value.days = numberOf(form);
}
void take(const Json& form, char16_t& value) {
    value = static_cast<char16_t>(form.get<std::uint16_t>());
}
void take(const Json& form, std::u16string& value) {
    value = textOf(form);
}
void take(const Json& form, std::string& value) {
    value = bytesOf(form);
}
template <class T>
void take(const Json& form, std::optional<T>& value) {
    if (!form.is_null()) take(form, value.emplace());
}
void take(const Json& form, std::vector<std::u16string>& values) {
    for (const Json& value : form) take(value, values.emplace_back());
}

// --- the services ---

// Asks for a service; texts are its arguments. Any trouble gives the empty answer.
class Asker {
public:
    explicit Asker(Tape& tape) : tape_(tape) {}

    template <class Real>
    auto ask(const char* service, std::initializer_list<View> arguments, const Real& real) const {
        decltype(real()) value{};
        Json question = Json::array({service});
        for (const View argument : arguments) question.push_back(textForm(argument));
        const Json answer = tape_.ask(std::move(question), [&] { return Json::object({{"gave", formOf(real())}}); });
        tape_.read(answer, [&](const Json& given) { take(given.at("gave"), value); });
        return value;
    }

private:
    Tape& tape_;
};

class TapedRegistry final : public platform::Registry {
public:
    TapedRegistry(const Registry& real, Asker asker) : real_(real), asker_(asker) {}

    std::optional<std::u16string> value(View key, View name) const override {
        return asker_.ask("registry.value", {key, name}, [&] { return real_.value(key, name); });
    }
    std::vector<std::u16string> valueNames(View key) const override {
        return asker_.ask("registry.valueNames", {key}, [&] { return real_.valueNames(key); });
    }
    std::vector<std::u16string> subkeys(View key) const override {
        return asker_.ask("registry.subkeys", {key}, [&] { return real_.subkeys(key); });
    }

private:
    const Registry& real_;
    const Asker asker_;
};

// What is written is not recorded, only whether it could be.
class TapedFiles final : public platform::Files {
public:
    TapedFiles(Files& real, Asker asker) : real_(real), asker_(asker) {}

    bool exists(View path) const override {
        return asker_.ask("files.exists", {path}, [&] { return real_.exists(path); });
    }
    std::optional<std::string> read(View path) const override {
        return asker_.ask("files.read", {path}, [&] { return real_.read(path); });
    }
    bool write(View path, std::string_view bytes) override {
        return asker_.ask("files.write", {path}, [&] { return real_.write(path, bytes); });
    }
    bool create(View path) override {
        return asker_.ask("files.create", {path}, [&] { return real_.create(path); });
    }
    bool append(View path, std::string_view bytes) override {
        return asker_.ask("files.append", {path}, [&] { return real_.append(path, bytes); });
    }
    bool remove(View path) override {
        return asker_.ask("files.remove", {path}, [&] { return real_.remove(path); });
    }
    std::optional<std::u16string> realPath(View path) const override {
        return asker_.ask("files.realPath", {path}, [&] { return real_.realPath(path); });
    }
    bool makeFolder(View path) override {
        return asker_.ask("files.makeFolder", {path}, [&] { return real_.makeFolder(path); });
    }

private:
    Files& real_;
    const Asker asker_;
};

class TapedClock final : public platform::Clock {
public:
    TapedClock(const Clock& real, Asker asker) : real_(real), asker_(asker) {}

    automation::Date now() const override {
        return asker_.ask("clock.now", {}, [&] { return real_.now(); });
    }
    double timer() const override {
        return asker_.ask("clock.timer", {}, [&] { return real_.timer(); });
    }

private:
    const Clock& real_;
    const Asker asker_;
};

class TapedFolders final : public platform::Folders {
public:
    TapedFolders(const Folders& real, Asker asker) : real_(real), asker_(asker) {}

    std::u16string commonData() const override {
        return asker_.ask("folders.commonData", {}, [&] { return real_.commonData(); });
    }
    std::u16string temporary() const override {
        return asker_.ask("folders.temporary", {}, [&] { return real_.temporary(); });
    }
    std::u16string component() const override {
        return asker_.ask("folders.component", {}, [&] { return real_.component(); });
    }
    std::u16string machineName() const override {
        return asker_.ask("folders.machineName", {}, [&] { return real_.machineName(); });
    }
    char16_t separator() const override {
        return asker_.ask("folders.separator", {}, [&] { return real_.separator(); });
    }

private:
    const Folders& real_;
    const Asker asker_;
};

class TapedGuids final : public platform::Guids {
public:
    TapedGuids(Guids& real, Asker asker) : real_(real), asker_(asker) {}

    std::u16string next() override {
        return asker_.ask("guids.next", {}, [&] { return real_.next(); });
    }

private:
    Guids& real_;
    const Asker asker_;
};

class TapedCreation final : public platform::Objects {
public:
    TapedCreation(Objects& real, Tape& tape, TapedObjects& objects) : real_(real), tape_(tape), objects_(objects) {}

    ObjectRef create(View className) override {
        TapedObjects::Held held;
        ObjectRef object;
        std::u16string reason;
        const auto make = [&] {
            try {
                return Json::object({{"gave", objects_.outsideForm(real_.create(className), held)}});
            } catch (const Error& error) {
                return Json::object({{"raised", textForm(error.description())}});
            }
        };
        const Json answer = tape_.ask(Json::array({"objects.create", textForm(className)}), make);
        tape_.read(answer, [&](const Json& given) {
            if (given.contains("raised")) {
                reason = textOf(given["raised"]);
            } else {
                object = objects_.objectOf(given["gave"]);
            }
        });
        if (!object) throw Error(429, reason);
        return object;
    }

private:
    Objects& real_;
    Tape& tape_;
    TapedObjects& objects_;
};

class TapedPictures final : public platform::Pictures {
public:
    TapedPictures(Pictures& real, Tape& tape, TapedObjects& objects) : real_(real), tape_(tape), objects_(objects) {}

    ObjectRef load(View path) override {
        TapedObjects::Held held;
        ObjectRef picture;
        const Json answer = tape_.ask(Json::array({"pictures.load", textForm(path)}), [&] {
            return Json::object({{"gave", objects_.outsideForm(real_.load(path), held)}});
        });
        tape_.read(answer, [&](const Json& given) { picture = objects_.objectOf(given.at("gave")); });
        return picture;
    }
    bool save(const ObjectRef& picture, View path) override {
        return Asker(tape_).ask("pictures.save", {path}, [&] {
            TapedObjects::Held held;
            return real_.save(objects_.handedOut(picture, held), path);
        });
    }

private:
    Pictures& real_;
    Tape& tape_;
    TapedObjects& objects_;
};

}  // namespace

struct TapedServices::Parts {
    Parts(platform::Services& real, Tape& tape, TapedObjects& taped)
        : registry(real.registry, Asker(tape)),
          files(real.files, Asker(tape)),
          clock(real.clock, Asker(tape)),
          folders(real.folders, Asker(tape)),
          objects(real.objects, tape, taped),
          pictures(real.pictures, tape, taped),
          guids(real.guids, Asker(tape)) {}

    TapedRegistry registry;
    TapedFiles files;
    TapedClock clock;
    TapedFolders folders;
    TapedCreation objects;
    TapedPictures pictures;
    TapedGuids guids;
    platform::Services services{registry, files, clock, folders, objects, pictures, guids};
};

TapedServices::TapedServices(platform::Services& real, Tape& tape)
    : objects_(std::make_shared<TapedObjects>(tape)), parts_(std::make_unique<Parts>(real, tape, *objects_)) {}

TapedServices::~TapedServices() {
    objects_->close();
}

platform::Services& TapedServices::services() noexcept {
    return parts_->services;
}

}  // namespace velmor::cli
