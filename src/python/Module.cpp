// The module velmor._velmor: the engine for velmor/__init__.py, which gives values their types. Parameters are
// positional. A tuple has its elements in the order of the fields of the named tuple that is made of it.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "python/Calls.h"
#include "python/Text.h"
#include "python/Values.h"
#include "velmor/velmor.h"

namespace velmor::python {
namespace {

// Raises velmor.Error.
[[noreturn]] void raise(const Failure& failure) {
    const py::object type = py::module_::import("velmor._types").attr("Error");
    const py::object error = type(failure.number, textOf(failure.message));
    PyErr_SetObject(type.ptr(), error.ptr());
    throw py::error_already_set();
}

template <class Value>
Value valueOf(Outcome<Value> outcome) {
    if (!outcome) raise(outcome.failure());
    return std::move(outcome).value();
}

// The result of `work`, without the interpreter lock.
template <class Work>
auto unlocked(Work work) {
    const py::gil_scoped_release released;
    return work();
}

template <class Items, class Convert>
py::tuple tupleOf(const Items& items, Convert convert) {
    py::tuple tuple(items.size());
    for (std::size_t index = 0; index < items.size(); ++index) tuple[index] = convert(items[index]);
    return tuple;
}

// The enumerator of the name's place. ValueError for a name that is not there.
template <class Choice, std::size_t count>
Choice choiceOf(py::handle name, const char* what, const std::array<const char*, count>& names) {
    if (!PyUnicode_Check(name.ptr())) throw py::type_error(std::string(what) + " must be str");
    std::string known;
    for (std::size_t index = 0; index < count; ++index) {
        if (PyUnicode_CompareWithASCIIString(name.ptr(), names[index]) == 0) return static_cast<Choice>(index);
        known.append(known.empty() ? "'" : ", '").append(names[index]).append("'");
    }
    throw py::value_error(std::string(what) + " must be one of " + known + ", not '" + std::string(py::str(name)) +
                          "'");
}

// (include_path, include_root, missing, data_tags, exact, trace), paths as str or None.
EvaluateOptions optionsOf(const py::tuple& given) {
    EvaluateOptions options;
    if (!given[0].is_none()) options.includePath = unitsOf(given[0], "include_path");
    if (!given[1].is_none()) options.includeRoot = unitsOf(given[1], "include_root");
    options.missing = choiceOf<Missing, 4>(given[2], "missing", {"empty", "keep", "mark", "fail"});
    options.dataTags = choiceOf<DataTags, 3>(given[3], "data_tags", {"allow", "report", "refuse"});
    options.exact = given[4].cast<bool>();
    options.trace = given[5].cast<bool>();
    return options;
}

py::tuple tupleOf(const LogEntry& entry) {
    return py::make_tuple(textOf(entry.handler), textOf(entry.message), entry.number, textOf(entry.tag),
                          textOf(entry.data), entry.tagIndex, entry.position, entry.line, entry.column);
}

py::tuple tupleOf(const TracedTag& tag) {
    return py::make_tuple(tag.parent, textOf(tag.origin), textOf(tag.handler), textOf(tag.command), textOf(tag.name),
                          tag.position, tag.length, tag.place, tag.seconds);
}

py::tuple tupleOf(const Mistake::Place& place) {
    return py::make_tuple(textOf(place.file), place.position, place.line, place.column);
}

py::tuple tupleOf(const Mistake& mistake) {
    return py::make_tuple(textOf(mistake.code), mistake.isError, textOf(mistake.message), textOf(mistake.hint),
                          tupleOf(mistake.place), mistake.length, textOf(mistake.seenAt), textOf(mistake.context),
                          tupleOf(mistake.includedFrom, [](const auto& place) { return tupleOf(place); }));
}

py::tuple tupleOf(const TagPlace& tag) {
    const auto pair = [](const auto& each) { return py::make_tuple(textOf(each.first), textOf(each.second)); };
    return py::make_tuple(tag.position, tag.length, textOf(tag.handler), textOf(tag.command),
                          tupleOf(tag.parameters, pair),
                          tupleOf(tag.tags, [](const TagPlace& inner) { return tupleOf(inner); }));
}

// Handlers by their names. The callables come with each evaluation, so that this class holds none.
class Engine {
public:
    Engine(const py::object& registryFile, const std::vector<py::object>& folders,
           const std::vector<std::string>& handlers)
        : engine_(made(registryFile, folders)) {
        for (const std::string& name : handlers) engine_.setHandler(name, handlerOf(name));
    }

    // (text, entries, whether it failed, trace)
    py::tuple evaluate(py::handle source, py::handle given, py::object handlers, const py::tuple& how) const {
        const auto* const compiled = py::isinstance<Template>(source) ? source.cast<const Template*>() : nullptr;
        const std::u16string text = compiled ? std::u16string() : unitsOf(source, "the template");
        Properties properties;
        if (!given.is_none()) setAll(properties, given);
        const EvaluateOptions options = optionsOf(how);
        Run run(std::move(handlers));
        const Evaluated evaluated = unlocked([&] {
            return compiled ? engine_.evaluate(*compiled, properties, options)
                            : engine_.evaluate(text, properties, options);
        });
        run.raiseStop();
        return py::make_tuple(
            textOf(evaluated.text), tupleOf(evaluated.errors, [](const LogEntry& each) { return tupleOf(each); }),
            evaluated.failed, tupleOf(evaluated.trace, [](const TracedTag& each) { return tupleOf(each); }));
    }

    Template compile(py::handle source) const {
        const std::u16string text = unitsOf(source, "the template");
        return unlocked([&] { return engine_.compile(text); });
    }

    // (mistakes, how many more there are)
    py::tuple check(py::handle source, py::handle given, const py::tuple& how) const {
        const std::u16string text = unitsOf(source, "the template");
        std::optional<Properties> properties;
        if (!given.is_none()) setAll(properties.emplace(), given);
        const EvaluateOptions options = optionsOf(how);
        const Checked checked =
            valueOf(unlocked([&] { return engine_.check(text, properties ? &*properties : nullptr, options); }));
        return py::make_tuple(tupleOf(checked.mistakes, [](const Mistake& each) { return tupleOf(each); }),
                              checked.more);
    }

    py::str schema(py::handle source, const py::tuple& how) const {
        const std::u16string text = unitsOf(source, "the template");
        const EvaluateOptions options = optionsOf(how);
        return textOf(unlocked([&] { return engine_.schema(text, options); }));
    }

    py::tuple tags(py::handle source) const {
        const std::u16string text = unitsOf(source, "the template");
        const auto places = unlocked([&] { return engine_.tags(text); });
        return tupleOf(places, [](const TagPlace& each) { return tupleOf(each); });
    }

    py::str clean(py::handle rtf, bool exact) const {
        const std::u16string text = unitsOf(rtf, "the document");
        return textOf(unlocked([&] { return engine_.clean(text, exact); }));
    }

    py::str join(py::handle documents, bool exact) const {
        std::vector<std::u16string> texts;
        for (const py::handle document : documents) texts.push_back(unitsOf(document, "a document"));
        return textOf(valueOf(unlocked([&] { return engine_.join(texts, exact); })));
    }

private:
    static velmor::Engine made(const py::object& registryFile, const std::vector<py::object>& folders) {
        EngineOptions options;
        if (!registryFile.is_none()) options.registryFile = unitsOf(registryFile, "registry");
        for (const py::object& folder : folders) options.handlerFolders.push_back(unitsOf(folder, "a handler folder"));
        return valueOf(velmor::Engine::make(options));
    }

    velmor::Engine engine_;
};

void defineEngine(py::module_& module) {
    py::class_<Template>(module, "Template").def_property_readonly("text", [](const Template& self) {
        return textOf(self.text());
    });
    py::class_<Engine>(module, "Engine")
        .def(py::init<py::object, const std::vector<py::object>&, const std::vector<std::string>&>())
        .def("evaluate", &Engine::evaluate)
        .def("compile", &Engine::compile)
        .def("check", &Engine::check)
        .def("schema", &Engine::schema)
        .def("tags", &Engine::tags)
        .def("clean", &Engine::clean)
        .def("join", &Engine::join);
}

}  // namespace

PYBIND11_MODULE(_velmor, module) {
    importValueClasses();
    defineTagCall(module);
    defineEngine(module);
    module.def("decode", [](const py::bytes& data) { return textOf(documentText(std::string_view(data))); });
    module.def("encode", [](py::handle text) { return py::bytes(documentBytes(unitsOf(text, "the text"))); });
    module.def("version", [] { return std::string(version()); });
}

}  // namespace velmor::python
