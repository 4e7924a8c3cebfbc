#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>

namespace velmor::python {

namespace py = pybind11;

// A str as UTF-16; lone surrogates stay. Raises TypeError for anything else; `what` names it in the message.
std::u16string unitsOf(py::handle text, const char* what);
// UTF-16 as a str; lone surrogates stay.
py::str textOf(std::u16string_view units);

}  // namespace velmor::python
