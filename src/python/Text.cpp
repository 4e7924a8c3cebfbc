#include "python/Text.h"

#include <algorithm>

namespace velmor::python {
namespace {

bool isSurrogate(char16_t unit) {
    return (unit & 0xF800) == 0xD800;
}

template <class Character>
std::u16string widened(PyObject* text) {
    const auto* const first = static_cast<const Character*>(PyUnicode_DATA(text));
    return std::u16string(first, first + PyUnicode_GET_LENGTH(text));
}

std::u16string paired(PyObject* text) {
    const Py_UCS4* const first = PyUnicode_4BYTE_DATA(text);
    std::u16string units;
    units.reserve(static_cast<std::size_t>(PyUnicode_GET_LENGTH(text)));
    std::for_each(first, first + PyUnicode_GET_LENGTH(text), [&](Py_UCS4 character) {
        if (character > 0xFFFF) {
            units += static_cast<char16_t>(0xD7C0 + (character >> 10));
            character = 0xDC00 | (character & 0x3FF);
        }
        units += static_cast<char16_t>(character);
    });
    return units;
}

py::str narrowed(std::u16string_view units, Py_UCS4 largest) {
    PyObject* const text = PyUnicode_New(static_cast<Py_ssize_t>(units.size()), largest);
    if (text == nullptr) throw py::error_already_set();
    std::transform(units.begin(), units.end(), PyUnicode_1BYTE_DATA(text),
                   [](char16_t unit) { return static_cast<Py_UCS1>(unit); });
    return py::reinterpret_steal<py::str>(text);
}

py::str joined(std::u16string_view units) {
    int order = PY_LITTLE_ENDIAN ? -1 : 1;
    PyObject* const text = PyUnicode_DecodeUTF16(static_cast<const char*>(static_cast<const void*>(units.data())),
                                                 static_cast<Py_ssize_t>(2 * units.size()), "surrogatepass", &order);
    if (text == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

}  // namespace

std::u16string unitsOf(py::handle text, const char* what) {
    if (!PyUnicode_Check(text.ptr())) {
        throw py::type_error(std::string(what) + " must be str, not " + Py_TYPE(text.ptr())->tp_name);
    }
    if (PyUnicode_READY(text.ptr()) != 0) throw py::error_already_set();
    switch (PyUnicode_KIND(text.ptr())) {
        case PyUnicode_1BYTE_KIND:
            return widened<Py_UCS1>(text.ptr());
        case PyUnicode_2BYTE_KIND:
            return widened<Py_UCS2>(text.ptr());
        default:
            return paired(text.ptr());
    }
}

py::str textOf(std::u16string_view units) {
    char16_t bits = 0;
    for (const char16_t unit : units) bits |= unit;
    if (bits < 0x100) return narrowed(units, bits < 0x80 ? 0x7F : 0xFF);
    if (std::any_of(units.begin(), units.end(), isSurrogate)) return joined(units);
    return py::reinterpret_steal<py::str>(
        PyUnicode_FromKindAndData(PyUnicode_2BYTE_KIND, units.data(), static_cast<Py_ssize_t>(units.size())));
}

}  // namespace velmor::python
