#include <algorithm>
#include <cmath>
#include <vector>

#include "Module.h"
#include "core/ProtectedFileObject.h"
#include "platform/text/Utf.h"
#include "surveydata/SvpFile.h"

namespace orv::python {

namespace {

/// A profile with the file object that it stands in, so that saving keeps what else that holds.
class Profile {
public:
    explicit Profile(const py::object& path) {
        const std::wstring name = PathIn(path);
        if (!file.FileObject::FileOpen(name, kOpenRead)) Fail(name, FsResultText(file.LastResult()));
        profile.FileOpen(file);
    }
    Profile(const py::object& depths, const py::object& velocities, float offset) {
        file.FileObject::FileOpen(memfile(textencoding::utf8), L"");
        const Pair given(depths, velocities);
        std::vector<Point> samples;
        for (py::ssize_t i = 0; i < given.first.size(); ++i) {
            const double depth = given.first.data()[i], velocity = given.second.data()[i];
            if (!std::isfinite(depth) || !std::isfinite(velocity)) {
                throw py::value_error("a depth or a velocity is no number");
            }
            samples.push_back({velocity, depth, 0});
        }
        // Sorted at once: inserting each in its place would take the square of the time for a dense cast.
        std::stable_sort(samples.begin(), samples.end(), [](const Point& a, const Point& b) { return a.y > b.y; });
        for (const Point& sample : samples) profile.AddElement(sample);
        profile.SetSVOffset(offset);
    }

    Numbers Samples(bool withOffset) const {
        Numbers array({static_cast<py::ssize_t>(profile.GetNumPoints()), py::ssize_t{2}});
        double* at = array.mutable_data();
        for (int i = 0; i < profile.GetNumPoints(); ++i) {
            SvpPoint sample;
            profile.GetPoint(i, sample, withOffset);
            *at++ = sample.depth;
            *at++ = sample.soundVelocity;
        }
        return array;
    }

    Profile Reduced() const {
        Profile reduced = *this;
        reduced.profile.ReduceProfile();
        return reduced;
    }

    void Save(const py::object& path) {
        const std::wstring name = path.is_none() ? file.GetFileName() : PathIn(path);
        if (name.empty()) Fail(L"", L"a new profile needs a path to be saved to");
        if (profile.IsModified() && !profile.FileSave(file)) Fail(name, L"the profile can't be put into a file");
        if (!file.FileObject::FileSave(name, kSave)) Fail(name, FsResultText(file.LastResult()));
    }

    ProtectedFileObject file;
    SvpFile profile;
};

}  // namespace

void AddProfile(py::module_& module) {
    py::class_<Profile>(
        module, "SoundVelocityProfile",
        "A sound velocity profile. Depths are metres, negative below the surface; velocities metres per second.\n"
        "Not for several threads.")
        .def(py::init<py::object>(), py::arg("path"), "Reads a profile. Raises Error if the file can't be read.")
        .def(py::init<py::object, py::object, float>(), py::arg("depths"), py::arg("velocities"),
             py::arg("offset") = 0.0f,
             "A new profile of samples (n,), which are put in their order from the surface down.")
        .def("__len__", [](const Profile& p) { return p.profile.GetNumPoints(); })
        .def_property_readonly("path", [](const Profile& p) { return PathOut(p.file.GetFileName()); })
        .def_property(
            "offset", [](const Profile& p) { return p.profile.GetSVOffset(); },
            [](Profile& p, float offset) { p.profile.SetSVOffset(offset); },
            "Metres per second, a correction of all samples.")
        .def("samples", &Profile::Samples, py::arg("with_offset") = false,
             "An array (n, 2) of depths and velocities in the order of the file, with the offset added if asked for.")
        .def("reduced", &Profile::Reduced,
             "A copy thinned to a sample a band of depth: 1 m at the surface, 5 to 50 m below.")
        .def("save", &Profile::Save, py::arg("path") = py::none(),
             "Writes the profile, beside what else its file holds. Raises Error if that fails.");
}

}  // namespace orv::python
