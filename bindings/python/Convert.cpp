#include "Convert.h"

#include <limits>

#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::python {

void Fail(std::wstring_view where, std::wstring_view what) {
    throw Error(where.empty() ? ToUtf8(what) : PathToBytes(where) + ": " + ToUtf8(what));
}

std::wstring PathIn(const py::object& path) {
    const py::bytes name = py::module_::import("os").attr("fsencode")(path);
    const std::string bytes = name;
    // The system would take what stands in front of it for the whole path.
    if (bytes.find('\0') != bytes.npos) throw py::value_error("a path holds a null character");
    return ToNativePath(PathFromBytes(bytes));
}

py::object PathOut(const std::wstring& path) {
    return py::module_::import("os").attr("fsdecode")(py::bytes(PathToBytes(path)));
}

Pair::Pair(const py::object& one, const py::object& other) {
    const py::sequence both = py::module_::import("numpy").attr("broadcast_arrays")(one, other);
    first = Numbers(py::object(both[0]));
    second = Numbers(py::object(both[1]));
}

Numbers LikeThat(const Numbers& shape) {
    return Numbers(std::vector<py::ssize_t>(shape.shape(), shape.shape() + shape.ndim()));
}

py::object Plain(const Numbers& values) {
    return values.ndim() == 0 ? py::object(values.attr("item")()) : py::object(values);
}

Numbers Milliseconds(const py::object& times) {
    const py::module_ numpy = py::module_::import("numpy");
    const py::object array = numpy.attr("asarray")(times);
    if (py::cast<std::string>(array.attr("dtype").attr("kind")) != "M") return Numbers(array);
    const py::object micros = array.attr("astype")("datetime64[us]").attr("astype")("int64");
    const py::object millis = micros.attr("__truediv__")(1000.0);
    return Numbers(numpy.attr("where")(numpy.attr("isnat")(array), std::numeric_limits<double>::quiet_NaN(), millis));
}

void Reasons::Tell(std::size_t element, std::wstring_view why) {
    auto known = texts.find(why);
    if (known == texts.end()) known = texts.emplace(why, static_cast<std::uint32_t>(texts.size() + 1)).first;
    codes[element] = known->second;
}

py::object Reasons::Array(const Numbers& shape) const {
    std::vector<py::object> words(texts.size() + 1, py::none());
    for (const auto& [text, code] : texts) words[code] = py::cast(text);
    py::list flat;
    for (const std::uint32_t code : codes) flat.append(words[code]);
    if (shape.ndim() == 0) return flat[0];
    const py::module_ numpy = py::module_::import("numpy");
    const py::object array = numpy.attr("empty")(codes.size(), py::arg("dtype") = "object");
    array[py::ellipsis()] = flat;
    return array.attr("reshape")(shape.attr("shape"));
}

}  // namespace orv::python
