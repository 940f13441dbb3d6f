#include <cmath>

#include "Module.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "surveydata/TideStation.h"

namespace orv::python {

namespace {

/// One end of a stretch of time.
double Moment(const py::object& when, double open) {
    if (when.is_none()) return open;
    const Numbers time = Milliseconds(when);
    if (time.size() != 1 || std::isnan(*time.data())) throw py::value_error("an end of the time is no single time");
    return *time.data();
}

class Station {
public:
    Station(const py::object& path, bool create) {
        const std::wstring name = PathIn(py::module_::import("os").attr("path").attr("abspath")(path));
        const bool there = FileExists(name);
        if (!there && !create) Fail(name, FsResultText(FsResult::NotFound));
        const FsResult made = there ? FsResult::Ok : SaveWholeFile(name, {});  // of no length: a new station
        if (made != FsResult::Ok) Fail(name, FsResultText(made));
        if (!station.FileOpen(name)) Fail(name, L"the station can't be read");
        if (!there) station.SetStationName(GetTitleFromPath(name));
    }

    TideStation station;

    py::object Interpolate(const py::object& when) {
        const Numbers times = Milliseconds(when);
        Numbers values = LikeThat(times);
        const double* const time = times.data();
        double* const value = values.mutable_data();
        {
            const py::gil_scoped_release others;
            for (py::ssize_t i = 0; i < times.size(); ++i) {
                double at = time[i], height = 0;
                const bool found = std::isfinite(at) && station.InterpolateTide(at, height);
                value[i] = found ? height : std::numeric_limits<double>::quiet_NaN();
            }
        }
        return Plain(values);
    }

    py::object Values(const py::object& from, const py::object& to) {
        const double first = Moment(from, -std::numeric_limits<double>::infinity());
        const double last = Moment(to, std::numeric_limits<double>::infinity());
        std::vector<double> times, values;
        double time = first, value = 0;
        // By time and not by the cursor, which other threads move.
        bool more = std::isinf(first) ? station.GetTideValue(TideStation::kFirst, time, value)
                                      : station.GetTideValue(TideStation::kFirstAfterOrEqual, time, value);
        for (; more && time <= last; more = station.GetTideValue(TideStation::kFirstAfter, time, value)) {
            times.push_back(time);
            values.push_back(value);
        }
        return py::make_tuple(Numbers(static_cast<py::ssize_t>(times.size()), times.data()),
                              Numbers(static_cast<py::ssize_t>(values.size()), values.data()));
    }

    void Add(const py::object& when, const py::object& heights) {
        const Pair both(Milliseconds(when), heights);
        for (py::ssize_t i = 0; i < both.first.size(); ++i) {
            const double time = both.first.data()[i], height = both.second.data()[i];
            if (!std::isfinite(time) || !std::isfinite(height))
                throw py::value_error("a time or a height is no number");
            if (!station.AddTideValue(time, height - station.GetStationOffset())) {
                throw py::value_error("there is a value at this time already, or its month can't be made: " +
                                      std::to_string(time) + " ms");
            }
        }
    }

    py::object Span() {
        double first = 0, last = 0;
        return station.GetTimeSpan(first, last) ? py::object(py::make_tuple(first, last)) : py::none();
    }

    void Save() {
        if (!station.FileSave()) Fail(station.GetFileName(), L"the station or one of its months can't be written");
    }
};

}  // namespace

void AddTide(py::module_& module) {
    py::class_<Station>(
        module, "TideStation",
        "A tide gauge with its values. Times are numpy.datetime64 (UTC) or milliseconds since 1970 UTC; heights\n"
        "are metres and include the station's offset. Any thread may call.")
        .def(py::init<py::object, bool>(), py::arg("path"), py::kw_only(), py::arg("create") = false,
             "Opens a station file; see file_path(\"TideStation\", name). Values of a month are read when they are "
             "asked for.\n"
             "`create` makes a station that isn't there. Raises Error if it can't be read or made.")
        .def_property_readonly("path", [](const Station& s) { return PathOut(s.station.GetFileName()); })
        .def_property(
            "name", [](const Station& s) { return s.station.GetStationName(); },
            [](Station& s, const std::wstring& name) { s.station.SetStationName(name); })
        .def_property(
            "id", [](const Station& s) { return s.station.GetStationID(); },
            [](Station& s, const std::wstring& id) { s.station.SetStationID(id); })
        .def_property(
            "offset", [](const Station& s) { return s.station.GetStationOffset(); },
            [](Station& s, double offset) { s.station.SetStationOffset(offset); }, "Metres, added to every value.")
        .def_property(
            "longest_gap",
            [](const Station& s) {
                bool limited = false;
                double longest = 0;
                s.station.GetInterpolAttribs(limited, longest);
                return limited ? std::optional<double>(longest) : std::nullopt;
            },
            [](Station& s, std::optional<double> gap) {
                s.station.SetInterpolAttribs(gap.has_value(), gap.value_or(0));
            },
            "Milliseconds that are bridged between two values; None: any gap.")
        .def_property(
            "longest_hold",
            [](const Station& s) {
                bool held = false;
                double longest = 0;
                s.station.GetExtrapolationAttribs(held, longest);
                return held ? std::optional<double>(longest) : std::nullopt;
            },
            [](Station& s, std::optional<double> span) {
                s.station.SetExtrapolationAttribs(span.has_value(), span.value_or(0));
            },
            "Milliseconds for which the first and last value are held beyond the ends; None: not at all.")
        .def("__len__", [](const Station& s) { return s.station.GetNumValues(); })
        .def_property_readonly("span", &Station::Span,
                               "Times of the first and last value in milliseconds; None without values.")
        .def("interpolate", &Station::Interpolate, py::arg("times"),
             "Tide at times: a float for one, else an array of the same shape; NaN in a gap or too far beyond the "
             "ends.\n"
             "Other threads may run.")
        .def("values", &Station::Values, py::arg("first") = py::none(), py::arg("last") = py::none(),
             "Values from `first` to `last`, both included: arrays (n,) of times in milliseconds and of metres.")
        .def("add", &Station::Add, py::arg("times"), py::arg("heights"),
             "Adds values of the same shape. Raises ValueError at the first that is no number or whose time has one "
             "already;\n"
             "those before it are in.")
        .def("save", &Station::Save, "Writes the station and its changed months. Raises Error if that fails.");
}

}  // namespace orv::python
