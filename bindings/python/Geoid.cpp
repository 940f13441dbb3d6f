#include <limits>

#include "Module.h"
#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"

namespace orv::python {

namespace {

/// -1 for what is no model's.
int TypeIn(const py::object& model) {
    if (py::isinstance<py::str>(model)) return GeoidTypeForKey(py::cast<std::wstring>(model));
    if (!py::isinstance<py::int_>(model)) throw py::type_error("a model is a type id or a key");
    int tooLarge = 0;
    const long id = PyLong_AsLongAndOverflow(model.ptr(), &tooLarge);
    return id < 0 || id >= static_cast<long>(GeoidmodelTypeKeys.size()) ? -1 : static_cast<int>(id);
}

/// A model with its grid, which never changes: any number of threads may ask it.
class Geoid {
public:
    Geoid(const py::object& model, const py::object& file, const std::wstring& chartDatum) {
        const int type = TypeIn(model);
        if (type >= 0) geoid = GeoidModelList::GetGeoidModelList().Create(static_cast<unsigned short>(type));
        if (!geoid) throw py::key_error(py::cast<std::string>(py::str(model)));
        key = GeoidmodelTypeKeys[static_cast<std::size_t>(type)];
        const std::wstring name = PathIn(file);
        geoid->Init(nullptr);
        geoid->SetGeoidChartDatum(chartDatum);
        if (geoid->SetFileName(name)) return;
        // Models with files of fixed names take none and say so.
        const std::wstring path = geoid->DataFile();
        const bool fixed = geoid->LastReason() == GeoidReason::NotSupported;
        if (fixed && (path.empty() || FileExists(path))) return;
        Fail(path.empty() ? name : path, GeoidReasonText(fixed ? GeoidReason::NoFile : geoid->LastReason()));
    }

    const std::wstring& Key() const { return key; }
    py::object File() const { return PathOut(geoid->DataFile()); }

    py::object Separation(const py::object& latitudes, const py::object& longitudes, bool withReasons) const {
        const Pair positions(latitudes, longitudes);
        Numbers values = LikeThat(positions.first);
        const auto count = static_cast<std::size_t>(values.size());
        Reasons reasons(withReasons ? count : 0);
        const double* const latitude = positions.first.data();
        const double* const longitude = positions.second.data();
        double* const value = values.mutable_data();
        {
            const py::gil_scoped_release others;
            constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
            std::wstring remark;
            for (std::size_t i = 0; i < count; ++i) {
                value[i] = nowhere;
                double separation = 0;
                remark.clear();
                if (geoid->Calculate(latitude[i], longitude[i], nowhere, nowhere, separation, remark)) {
                    value[i] = separation;
                } else if (withReasons) {
                    reasons.Tell(i, GeoidReasonText(geoid->LastReason()));
                }
            }
        }
        return withReasons ? py::object(py::make_tuple(Plain(values), reasons.Array(values))) : Plain(values);
    }

private:
    std::unique_ptr<GeoidModel> geoid;
    std::wstring key;
};

std::vector<std::pair<int, std::wstring>> Models() {
    std::vector<std::pair<int, std::wstring>> models;
    for (const auto& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        models.emplace_back(model.typeId, GeoidmodelTypeKeys[model.typeId]);
    }
    return models;
}

}  // namespace

void AddGeoid(py::module_& module) {
    py::class_<Geoid>(module, "Geoid", "A geoid model with its grid. Any number of threads may ask it at once.")
        .def(py::init<py::object, py::object, std::wstring>(), py::arg("model"), py::arg("file") = "",
             py::arg("chart_datum") = L"",
             "`model`: type id or key, such as 28 or \"GeoidModelRDNAP2018\"; geoid_models() lists them. `file`: its "
             "grid in\n"
             "the installation's folder of geoid models. Raises KeyError for an unknown model, Error for a grid that "
             "is\n"
             "missing or no good.")
        .def_property_readonly("key", &Geoid::Key)
        .def_property_readonly("file", &Geoid::File, "Path of the grid that is read; empty for a model without one.")
        .def("separation", &Geoid::Separation, py::arg("latitude"), py::arg("longitude"), py::kw_only(),
             py::arg("reasons") = false,
             "Ellipsoid to geoid, in metres, at positions in degrees: what is taken off an ellipsoidal height. A float "
             "for\n"
             "floats, else an array of the shape that both arguments give together; NaN where there is none. With\n"
             "`reasons` also why: a text, or None where there is a value, of the same shape. Other threads may run.");
    module.def("geoid_models", &Models, "Type id and key of each model.");
}

}  // namespace orv::python
