#include "Module.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/LogFileName.h"

namespace orv::python {

namespace {

/// Seconds since 1970 UTC, from a number or a datetime.
std::int64_t Seconds(const py::object& time) {
    const py::object whole =
        py::module_::import("math").attr("floor")(py::hasattr(time, "timestamp") ? time.attr("timestamp")() : time);
    int tooLarge = 0;
    const std::int64_t seconds = PyLong_AsLongLongAndOverflow(whole.ptr(), &tooLarge);
    if (tooLarge != 0) throw py::value_error("a time beyond all calendars");
    return seconds;
}

std::wstring Compose(const std::wstring& vessel, const std::wstring& surveyType, const std::wstring& runline,
                     const py::object& time, const py::object& replayTime, int replayCount, bool automatic) {
    LogFileName name;
    name.ForceAutoNaming(automatic);
    name.SetVesselName(vessel);
    name.SetSurveyType(surveyType);
    name.SetRunlineName(runline);
    name.SetLogTime(Seconds(time));
    if (!replayTime.is_none()) name.SetReplayTime(Seconds(replayTime));
    name.SetReplayCount(replayCount);
    if (!name.IsValid())
        throw py::value_error("a log needs a vessel, a survey type, a run line and a time; a count only with a replay");
    return name.GetName();
}

LogFields Parse(const py::object& path) {
    const std::wstring name = PathIn(path);
    LogFields fields;
    if (!ParseLogName(GetTitleFromPath(name), fields)) {
        throw py::value_error(ToUtf8(name) + ": no name of a log; expected is vessel[type]_runline-YYYYMMDD-hhmmss");
    }
    return fields;
}

}  // namespace

void AddLogNames(py::module_& module) {
    py::class_<LogFields>(module, "LogName", "What the name of a log tells. Times are seconds since 1970 UTC.")
        .def_readonly("vessel", &LogFields::vessel)
        .def_readonly("survey_type", &LogFields::surveyType)
        .def_readonly("runline", &LogFields::runline)
        .def_readonly("time", &LogFields::logTime)
        .def_readonly("replay_time", &LogFields::replayTime, "0: not a replayed log.")
        .def_readonly("replay_count", &LogFields::replayCount);
    module.def(
        "compose_log_name", &Compose, py::arg("vessel"), py::arg("survey_type"), py::arg("runline"), py::arg("time"),
        py::kw_only(), py::arg("replay_time") = py::none(), py::arg("replay_count") = 0, py::arg("automatic") = false,
        "The name of a log without folder and extension, by the naming of the open project, or by the usual one if\n"
        "`automatic` or without a project. Times are seconds since 1970 UTC or datetime; names show local time.\n"
        "Raises ValueError if something is missing.");
    module.def(
        "parse_log_name", &Parse, py::arg("path"),
        "Takes the usual name of a log apart; folder and extension don't matter. Raises ValueError for any other.");
}

}  // namespace orv::python
