#include "Module.h"
#include "core/ProtectedFileObject.h"
#include "platform/os/FileSystem.h"

namespace orv::python {

namespace {

using Verification = ProtectedFileObject::Verification;

constexpr std::wstring_view kEncryptedSection = L"Encrypted";

/// A configuration file as it is: opened without verification, which would sign a changed one again.
class ConfigFile {
public:
    ConfigFile(const py::object& path, bool create) {
        const std::wstring name = PathIn(path);
        if (file.FileObject::FileOpen(name, kOpenRead)) return;
        const FsResult result = file.LastResult();
        if (!create || result != FsResult::NotFound) Fail(name, FsResultText(result));
        file.FileObject::FileOpen(memfile(textencoding::utf8), name);
    }

    py::object Path() const { return PathOut(file.GetFileName()); }

    std::wstring Get(const std::wstring& section, const std::wstring& key) const {
        std::wstring value;
        if (!file.GetItem(section, key, value)) throw py::key_error(Name(section, key));
        return value;
    }
    /// The number or flag of an item by the rules of the files, which know neither locale nor Python.
    template <class T>
    T GetAs(const std::wstring& section, const std::wstring& key) const {
        T value{};
        if (file.GetItem(section, key, value)) return value;
        if (file.GetErrorStatus() != kFileNoConvert) throw py::key_error(Name(section, key));
        throw py::value_error(Name(section, key) + " is \"" + py::cast<std::string>(py::cast(Get(section, key))) +
                              "\"");
    }
    template <class T>
    void Set(const std::wstring& section, const std::wstring& key, T value) {
        if (!file.SetItem(section, key, value, true)) throw py::value_error(Name(section, key) + " can't be set");
    }
    void Remove(const std::wstring& section, const std::optional<std::wstring>& key) {
        if (key ? !file.DeleteItem(section, *key, false) : !file.DeleteSection(section)) {
            throw py::key_error(Name(section, key.value_or(L"")));
        }
    }
    bool Has(const std::wstring& section, const std::optional<std::wstring>& key) const {
        return key ? file.HasKey(section, *key) : file.HasSection(section);
    }
    std::vector<std::wstring> Sections() const {
        std::vector<std::wstring> names;
        FobjSection cursor;
        std::wstring name;
        for (bool more = file.GetFirstSectionEntry(cursor, name); more; more = file.GetNextSectionEntry(cursor, name)) {
            names.push_back(name);
        }
        return names;
    }
    std::vector<std::pair<std::wstring, std::wstring>> Items(const std::wstring& section) const {
        if (!file.HasSection(section)) throw py::key_error(Name(section, L""));
        std::vector<std::pair<std::wstring, std::wstring>> items;
        FobjSection cursor;
        std::wstring key, value;
        for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
             more = file.GetNextMapEntry(cursor, key, value)) {
            items.emplace_back(key, value);
        }
        return items;
    }

    const char* Verify() const {
        if (file.HasSection(kEncryptedSection)) return "enciphered";
        constexpr const char* kNames[] = {"valid", "content changed", "title changed", "unsigned"};
        return kNames[static_cast<std::size_t>(file.Verify())];
    }
    void Sign() {
        if (file.HasSection(kEncryptedSection))
            Fail(file.GetFileName(), L"an enciphered file is signed by who deciphers it");
        if (!file.CreateCheckSum()) Fail(file.GetFileName(), L"it can't be signed");
    }
    void Save(const py::object& path) {
        const std::wstring name = path.is_none() ? file.GetFileName() : PathIn(path);
        if (!file.FileObject::FileSave(name, kSave)) Fail(name, FsResultText(file.LastResult()));
    }

private:
    static std::string Name(const std::wstring& section, const std::wstring& key) {
        return py::cast<std::string>(py::cast(L"[" + section + L"]" + (key.empty() ? L"" : L" " + key)));
    }

    ProtectedFileObject file;
};

}  // namespace

void AddConfig(py::module_& module) {
    const auto section = py::arg("section"), key = py::arg("key"), value = py::arg("value");
    py::class_<ConfigFile>(
        module, "ConfigFile",
        "A configuration file: sections of keys with texts, in the order of the file. Comments, blank\n"
        "lines and line ends survive; changes reach the disk by save() only. Not for several threads.")
        .def(py::init<py::object, bool>(), py::arg("path"), py::kw_only(), py::arg("create") = false,
             "Opens a file as it is. `create`: one that isn't there is an empty one, made by save(). Raises Error if "
             "it can't\n"
             "be read.")
        .def_property_readonly("path", &ConfigFile::Path)
        .def("get", &ConfigFile::Get, section, key, "The text of an item. Raises KeyError if there is none.")
        .def("get_int", &ConfigFile::GetAs<int>, section, key, "As get; ValueError if it is no whole number.")
        .def("get_float", &ConfigFile::GetAs<double>, section, key, "As get; ValueError if it is no number.")
        .def("get_bool", &ConfigFile::GetAs<bool>, section, key, "As get; ValueError if it is neither 0 nor 1.")
        .def("set", &ConfigFile::Set<bool>, section, key, py::arg("value").noconvert())
        .def("set", &ConfigFile::Set<long>, section, key, py::arg("value").noconvert())
        .def("set", &ConfigFile::Set<double>, section, key, py::arg("value").noconvert())
        .def("set", &ConfigFile::Set<const std::wstring&>, section, key, value,
             "Sets an item (text, number or flag), with its section if that is new. A number is written so that it "
             "reads\n"
             "back the same. Raises ValueError for a name that no file can hold.")
        .def("remove", &ConfigFile::Remove, section, py::arg("key") = py::none(),
             "Removes an item, or the whole section. Raises KeyError if there is none.")
        .def("has", &ConfigFile::Has, section, py::arg("key") = py::none())
        .def("sections", &ConfigFile::Sections, "Names in the order of the file.")
        .def("items", &ConfigFile::Items, section, "Pairs of key and text in the order of the file.")
        .def("verify", &ConfigFile::Verify,
             "How the present content stands against its signature: \"valid\", \"content changed\", \"title changed\" "
             "(the\n"
             "file was renamed), \"unsigned\" or \"enciphered\".")
        .def("sign", &ConfigFile::Sign,
             "Puts the signature of the present content into it; call it last, before save().")
        .def("save", &ConfigFile::Save, py::arg("path") = py::none(),
             "Writes the content as it stands, signature included, to `path` or where it came from (a\n"
             "signature holds for the name, too). At any moment the file on disk is the old one or "
             "the\n"
             "new one, whole. Raises Error if it can't be written.");
}

}  // namespace orv::python
