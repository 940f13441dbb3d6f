#include <algorithm>
#include <iterator>
#include <limits>
#include <mutex>

#include "Module.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "core/DataSearchStatusText.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"

namespace orv::python {

namespace {

DataSearch& Opened() {
    DataSearch& search = DataSearch::GetDataSearch();
    if (!search.IsInit()) throw Error("no installation is open: call open_installation first");
    return search;
}

std::wstring FolderIn(const py::object& path) {
    return path.is_none() ? std::wstring()
                          : WithSeparator(PathIn(py::module_::import("os").attr("path").attr("abspath")(path)));
}

void OpenInstallation(const py::object& system, const std::wstring& appDef, const py::object& projects,
                      const py::object& common) {
    const std::wstring folder = FolderIn(system);
    const std::unique_lock alone(OpeningMutex());
    DataSearch& search = DataSearch::GetDataSearch();
    if (!folder.empty() && !FileExists(folder + std::wstring(ORV_DEF_FILENAME))) {
        Fail(folder + std::wstring(ORV_DEF_FILENAME), FsResultText(FsResult::NotFound));
    }
    if (!search.Initialise(folder, true, appDef, false, FolderIn(projects), FolderIn(common))) {
        const std::wstring_view why = DataSearchStatusText(search.GetErrorStatus());
        Fail(folder, why.empty() ? L"this computer tells no folder for settings: name the system folder" : why);
    }
}

/// Full name of a project's file, whether it is there or not.
std::wstring ProjectFile(const std::wstring& name) {
    std::wstring root;
    DataSearch::GetDataSearch().GetDataPathInfo(kLocationProjects, root);
    return root + name + kPathSeparator + std::wstring(PROJECT_FILENAME);
}

void OpenProject(const std::wstring& name) {
    DataSearch& search = Opened();
    const std::unique_lock alone(OpeningMutex());
    const std::wstring wanted = name.empty() ? search.GetCurrentProjectName() : name;
    if (wanted.empty()) throw Error("the settings name no current project: name one");
    // The opening would close the present project before it fails.
    if (!FileExists(ProjectFile(wanted))) Fail(ProjectFile(wanted), L"no such project");
    if (search.InitProject(wanted, false)) return;
    const int status = search.GetErrorStatus();
    Fail(ProjectFile(wanted), status == kSearchOk ? search.GetProjectDefinition().LastProblem()
                                                  : std::wstring(DataSearchStatusText(status)));
}

std::vector<std::wstring> Projects() {
    std::vector<std::wstring> folders, names;
    Opened().GetProjects(folders);
    // The folder of the common files lies among them.
    std::copy_if(folders.begin(), folders.end(), std::back_inserter(names),
                 [](const std::wstring& folder) { return FileExists(ProjectFile(folder)); });
    return names;
}

py::object Folder(const std::wstring& location) {
    const auto known = std::find(pathKeys.begin(), pathKeys.end(), location);
    if (known == pathKeys.end()) throw py::key_error(py::cast<std::string>(py::cast(location)));
    std::wstring folder;
    if (!Opened().GetDataPathInfo(static_cast<int>(known - pathKeys.begin()), folder)) return py::none();
    return PathOut(folder);
}

unsigned TypeIn(const std::wstring& key) {
    const unsigned id = GetFileTypeForKey(key);
    if (id >= fileTypeKeys.size()) throw py::key_error(py::cast<std::string>(py::cast(key)));
    return id;
}

py::object FilePath(const std::wstring& type, const py::object& name) {
    std::wstring path = PathIn(name);
    if (!Opened().GetFullPath(TypeIn(type), path)) Fail(path, DataSearchStatusText(Opened().GetErrorStatus()));
    return PathOut(path);
}

std::vector<py::object> FileNames(const std::wstring& type) {
    std::vector<std::wstring> names;
    Opened().GetFileNames(TypeIn(type), names);
    std::vector<py::object> result;
    for (const std::wstring& name : names) result.push_back(PathOut(name));
    return result;
}

py::object HeightSeparation(const py::object& latitudes, const py::object& longitudes, bool withReasons) {
    Opened();
    const Pair positions(latitudes, longitudes);
    Numbers values = LikeThat(positions.first);
    const auto count = static_cast<std::size_t>(values.size());
    Reasons reasons(withReasons ? count : 0);
    const double* const latitude = positions.first.data();
    const double* const longitude = positions.second.data();
    double* const value = values.mutable_data();
    {
        const py::gil_scoped_release others;
        const std::shared_lock open(OpeningMutex());
        OrvGeoCoordSysBase* const system = DataSearch::GetDataSearch().GetProjectDefinition().GetGeoCoordSys();
        std::wstring why;
        for (std::size_t i = 0; i < count; ++i) {
            value[i] = std::numeric_limits<double>::quiet_NaN();
            double separation = 0;
            if (!system) {
                why = L"no project with a coordinate system is open";
            } else if (system->HeightSeparation(latitude[i], longitude[i], separation, why)) {
                value[i] = separation;
                continue;
            }
            if (withReasons) reasons.Tell(i, why);
        }
    }
    return withReasons ? py::object(py::make_tuple(Plain(values), reasons.Array(values))) : Plain(values);
}

}  // namespace

void AddPlaces(py::module_& module) {
    module.def(
        "open_installation", &OpenInstallation, py::arg("system") = py::none(), py::arg("app_def") = L"navigate",
        py::kw_only(), py::arg("projects") = py::none(), py::arg("common") = py::none(),
        "Opens the installation whose ORV.ini lies in the folder `system` (without one: the computer's own), as an\n"
        "application does at its start. `projects` and `common` override folders of the settings. There is one at a\n"
        "time. Raises Error with the reason.");
    module.def(
        "open_project", &OpenProject, py::arg("name") = L"",
        "Opens a project of the open installation, without a name the current one. Like any application it repairs\n"
        "and signs the project file where that is called for. Raises Error with the reason.");
    module.def("projects", &Projects, "Names of the projects there are.");
    module.def("folder", &Folder, py::arg("location"),
               "Path of a location, such as \"LogData\" or \"GeoidModels\" (LOCATIONS lists them), with its separator; "
               "None if\n"
               "the settings name none. Raises KeyError for an unknown one.");
    module.def(
        "file_path", &FilePath, py::arg("type"), py::arg("name"),
        "Where a file of a type, such as \"TideStation\", lies by its name without extension; whether it is there or\n"
        "not. Raises KeyError for an unknown type.");
    module.def("file_names", &FileNames, py::arg("type"), "Names of the files of a type that are there.");
    module.attr("LOCATIONS") = py::tuple(py::cast(std::vector<std::wstring>(pathKeys.begin(), pathKeys.end())));
    module.def(
        "height_separation", &HeightSeparation, py::arg("latitude"), py::arg("longitude"), py::kw_only(),
        py::arg("reasons") = false,
        "Ellipsoid to the height reference of the open project, in its length unit, at positions in degrees. A float\n"
        "for floats, else an array of the shape that both arguments give together; NaN where there is none. With\n"
        "`reasons` also why: a text, or None where there is a value, of the same shape. Other threads may run.");
}

}  // namespace orv::python
