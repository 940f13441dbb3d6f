#include "Module.h"

#include <dlfcn.h>

#include "core/OrvConfigureInitializer.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/PathText.h"

namespace orv::python {

namespace {

/// The interpreter belongs to the system, not to an installation: the program that stands for it lies in bin/ beside
/// the lib/ of the library, so that settings and definitions are those that the library came with.
void StandInForInterpreter() {
    Dl_info library;
    if (dladdr(reinterpret_cast<const void*>(&SetProgramPath), &library) == 0 || !library.dli_fname) return;
    std::wstring folder = GetFolderFromPath(PathFromBytes(library.dli_fname));
    for (int level = 0; level < 2 && !folder.empty(); ++level) {
        const std::wstring inner = WithoutSeparator(folder);
        folder = GetFolderFromPath(inner);
        if (GetNameFromPath(inner) == L"lib") {
            SetProgramPath(folder + L"bin/python3");
            return;
        }
    }
}

}  // namespace

std::shared_mutex& OpeningMutex() {
    static std::shared_mutex mutex;
    return mutex;
}

}  // namespace orv::python

PYBIND11_MODULE(orvconfigure, module) {
    using namespace orv;
    using namespace orv::python;
    module.doc() =
        "Configuration library of a hydrographic survey suite: configuration files, folders of an installation and "
        "its\n"
        "projects, heights above a geoid, tides, sound velocity profiles and the names of logs.\n\n"
        "Positions are decimal degrees, latitude first. Functions of numbers take anything NumPy makes an array of,\n"
        "combine arguments by its rules of shapes, and give NaN where there is no value. Failures raise Error.";
    module.attr("__version__") = ORVCONFIGURE_VERSION;
    py::register_exception<python::Error>(module, "Error").doc() = "What failed, in the library's words";
    StandInForInterpreter();
    static OrvConfigureInitializer registries;  // kept to the end, as hosts do
    registries.RegisterComps();
    registries.RegisterGeoidModel();
    AddConfig(module);
    AddPlaces(module);
    AddGeoid(module);
    AddTide(module);
    AddProfile(module);
    AddLogNames(module);
}
