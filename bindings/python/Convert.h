#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orv::python {

namespace py = pybind11;

/// Becomes orvconfigure.Error, with this text.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
/// "where: what", both in the library's words.
[[noreturn]] void Fail(std::wstring_view where, std::wstring_view what);

/// A path as Python has it (str, bytes, os.PathLike) and as the library has it; names that are no UTF-8 survive.
std::wstring PathIn(const py::object& path);
py::object PathOut(const std::wstring& path);

/// Numbers from whatever NumPy makes an array of: contiguous, of doubles.
using Numbers = py::array_t<double, py::array::c_style | py::array::forcecast>;
/// Two arguments brought to one shape by NumPy's rules.
struct Pair {
    Pair(const py::object& first, const py::object& second);
    Numbers first, second;
};
/// An empty array of the shape of another, and its elements.
Numbers LikeThat(const Numbers& shape);
/// What Python expects of a function of numbers: a plain one for plain ones.
py::object Plain(const Numbers& values);

/// Milliseconds since 1970 UTC from numbers or from datetime64 of any unit; NaT becomes NaN.
Numbers Milliseconds(const py::object& times);

/// Why elements of a result have no value. Each text is kept once, however many elements it holds for.
class Reasons {
public:
    explicit Reasons(std::size_t elements) : codes(elements, 0) {}
    /// The elements may be told without holding the interpreter.
    void Tell(std::size_t element, std::wstring_view why);
    /// An array of objects: None where there is a value, else a text.
    py::object Array(const Numbers& shape) const;

private:
    std::vector<std::uint32_t> codes;  // 0: there is a value
    std::map<std::wstring, std::uint32_t, std::less<>> texts;
};

}  // namespace orv::python
