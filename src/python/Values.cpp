#include "python/Values.h"

#include <datetime.h>

#include <cmath>
#include <limits>
#include <string>

namespace velmor::python {
namespace {

constexpr int mostLevels = 100;  // as in JSON data

// Sets the values of one collection and of those within it.
class Values {
public:
    Values(Properties& into, int level) : into_(into), level_(level) {
        if (level > mostLevels) throw py::value_error("the properties nest deeper than 100 levels");
    }

    void setMapping(py::handle mapping);
    void setList(py::handle list);

private:
    void set(const std::u16string& name, py::handle value);
    bool setSimple(const std::u16string& name, PyObject* value);
    bool setCollection(const std::u16string& name, py::handle value);
    void setInteger(const std::u16string& name, PyObject* value);
    void setFloat(const std::u16string& name, double value);
    void setDay(const std::u16string& name, PyObject* value);
    void setDecimal(const std::u16string& name, py::handle value);

    Properties& into_;
    const int level_;
};

// Classes of Python's library. They last until the program's end.
PyObject* decimalClass = nullptr;
PyObject* mappingClass = nullptr;

bool isOne(py::handle value, PyObject* type) {
    const int answer = PyObject_IsInstance(value.ptr(), type);
    if (answer < 0) throw py::error_already_set();
    return answer != 0;
}

bool isMapping(py::handle value) {
    return PyDict_Check(value.ptr()) || isOne(value, mappingClass);
}

// Days from 30 December 1899 to a day of the Gregorian calendar.
int dayNumber(int year, int month, int day) {
    const int y = month > 2 ? year : year - 1;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day;  // the year begins in March
    return 365 * y + y / 4 - y / 100 + y / 400 + dayOfYear - 693900;
}

double dayFraction(PyObject* value) {
    const double seconds = PyDateTime_DATE_GET_HOUR(value) * 3600.0 + PyDateTime_DATE_GET_MINUTE(value) * 60.0 +
                           PyDateTime_DATE_GET_SECOND(value) + PyDateTime_DATE_GET_MICROSECOND(value) / 1e6;
    return seconds / 86400;
}

void Values::setMapping(py::handle mapping) {
    if (PyDict_CheckExact(mapping.ptr())) {
        PyObject* name = nullptr;
        PyObject* value = nullptr;
        // Values may run Python code, which may change the dict.
        const auto copy = py::reinterpret_steal<py::object>(PyDict_Copy(mapping.ptr()));
        if (!copy) throw py::error_already_set();
        for (Py_ssize_t at = 0; PyDict_Next(copy.ptr(), &at, &name, &value) != 0;) {
            set(unitsOf(name, "the name of a property"), value);
        }
        return;
    }
    for (const py::handle item : mapping.attr("items")()) {
        const auto pair = py::cast<py::tuple>(item);
        set(unitsOf(pair[0], "the name of a property"), pair[1]);
    }
}

void Values::setList(py::handle list) {
    int index = 0;
    for (const py::handle value : list) {
        const std::string number = std::to_string(++index);
        set(std::u16string(number.begin(), number.end()), value);
    }
}

void Values::set(const std::u16string& name, py::handle value) {
    if (setSimple(name, value.ptr()) || setCollection(name, value)) return;
    throw py::type_error("property \"" + std::string(textOf(name)) + "\": a value of the type " +
                         Py_TYPE(value.ptr())->tp_name + " cannot be a property");
}

bool Values::setSimple(const std::u16string& name, PyObject* value) {
    if (PyUnicode_Check(value)) {
        into_.setText(name, unitsOf(value, "a text"));
    } else if (value == Py_None) {
        into_.setNull(name);
    } else if (PyBool_Check(value)) {
        into_.setTruth(name, value == Py_True);
    } else if (PyFloat_Check(value)) {
        setFloat(name, PyFloat_AS_DOUBLE(value));
    } else if (PyIndex_Check(value)) {
        setInteger(name, value);
    } else if (PyDate_Check(value)) {
        setDay(name, value);
    } else {
        return false;
    }
    return true;
}

bool Values::setCollection(const std::u16string& name, py::handle value) {
    if (PyList_Check(value.ptr()) || PyTuple_Check(value.ptr())) {
        Properties child = into_.addChild(name);
        Values(child, level_ + 1).setList(value);
    } else if (isOne(value, decimalClass)) {
        setDecimal(name, value);
    } else if (isMapping(value)) {
        Properties child = into_.addChild(name);
        Values(child, level_ + 1).setMapping(value);
    } else {
        return false;
    }
    return true;
}

// As of JSON data: a double where 32 bits do not hold it.
void Values::setInteger(const std::u16string& name, PyObject* value) {
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value));
    if (!number) throw py::error_already_set();
    int overflow = 0;
    const long long exact = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    using Long = std::numeric_limits<std::int32_t>;
    if (overflow == 0 && exact >= Long::min() && exact <= Long::max()) {
        into_.setNumber(name, static_cast<std::int32_t>(exact));
        return;
    }
    const double nearest = PyLong_AsDouble(number.ptr());
    if (nearest == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
    into_.setNumber(name, nearest);
}

void Values::setFloat(const std::u16string& name, double value) {
    if (!std::isfinite(value)) {
        throw py::value_error("property \"" + std::string(textOf(name)) + "\": the number is not finite");
    }
    into_.setNumber(name, value);
}

// A datetime is a date, too. Its time zone is not looked at.
void Values::setDay(const std::u16string& name, PyObject* value) {
    const int year = PyDateTime_GET_YEAR(value);
    if (year < 100) {
        throw py::value_error("property \"" + std::string(textOf(name)) + "\": dates begin with the year 100");
    }
    const double day = dayNumber(year, PyDateTime_GET_MONTH(value), PyDateTime_GET_DAY(value));
    const double time = PyDateTime_Check(value) ? dayFraction(value) : 0;
    into_.setDate(name, day < 0 ? day - time : day + time);
}

void Values::setDecimal(const std::u16string& name, py::handle value) {
    const py::str digits = value.attr("__format__")("f");
    if (!into_.setDecimal(name, unitsOf(digits, "a decimal"))) {
        throw py::value_error("property \"" + std::string(textOf(name)) + "\": " + std::string(digits) +
                              " is no number of at most 28 digits");
    }
}

}  // namespace

void importValueClasses() {
    PyDateTime_IMPORT;
    decimalClass = py::object(py::module_::import("decimal").attr("Decimal")).release().ptr();
    mappingClass = py::object(py::module_::import("collections.abc").attr("Mapping")).release().ptr();
}

void setAll(Properties& properties, py::handle mapping) {
    if (!isMapping(mapping)) {
        throw py::type_error(std::string("properties must be a mapping, not ") + Py_TYPE(mapping.ptr())->tp_name);
    }
    Values(properties, 0).setMapping(mapping);
}

}  // namespace velmor::python
