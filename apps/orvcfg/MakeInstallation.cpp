#include "MakeInstallation.h"

#include "Installation.h"
#include "Session.h"
#include "core/ConfigKeys.h"
#include "core/OrvIniFile_IO.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::wstring_view kSystems = L"CoordSystems.geo";
constexpr std::wstring_view kUnits = L"Units.uni";
// Only what differs from the shipped systems belongs here: a whole copy would hide every later correction of them.
constexpr std::string_view kOwnSystems =
    "; Coordinate systems of this installation, and changes to the shipped ones, item by item. The shipped file of\r\n"
    "; this name, in the program's data folder, shows the form.\r\n";

/// Folders that the settings lead to, and what a new installation keeps in them.
struct FolderRow {
    int location;
    std::string_view what;
};
constexpr FolderRow kFolders[] = {
    {kLocationProjects, "projects"},
    {kLocationCommon, "common project files"},
    {25, "S-57 charts"},
    {34, "web maps"},
    {kLocationUserGeneral, "user's general data"},
    {kLocationAppDefs, "application definitions"},
    {kLocationGeoidModels, "geoid grids"},
    {15, "report types"},
    {16, "symbols"},
    {21, "palettes"},
    {27, "sample data"},
    {28, "manuals"},
    {31, "calibrations"},
    {24, "chart database"},
    {26, "external data"},
};

class Maker {
public:
    Maker(Session& forSession, const InstallationPlan& thePlan, std::vector<MadeThing>& into)
        : session(forSession), plan(thePlan), things(into) {}

    bool Make() {
        templates = DataRoot(session);
        const std::wstring settings = templates + std::wstring(ORV_DEF_FILENAME);
        if (templates.empty()) return false;
        if (!FileExists(settings)) {
            session.Problem(PathToBytes(settings), "The shipped template isn't there",
                            "It comes with the program: install it again.");
            return false;
        }
        const std::wstring system = SystemFolderOf(plan.root);
        return Folder(plan.root, "installation") && Folder(system, "system folder") &&
               General(templates + L"General/", plan.root + L"General/") && Settings(system) &&
               Text(system + std::wstring(kSystems), kOwnSystems, "coordinate systems of its own") && Open(system) &&
               Folders();
    }

private:
    bool Failed(const std::wstring& path, FsResult result) {
        session.Problem(PathToBytes(path), "Can't be made: " + ToUtf8(FsResultText(result)),
                        "Choose a folder that you may write to.");
        return false;
    }

    bool Folder(const std::wstring& path, std::string_view what) {
        const bool made = !FolderExists(path);
        if (made) {
            if (const FsResult result = MakeFolders(path); result != FsResult::Ok) return Failed(path, result);
        }
        things.push_back({path, std::string(what), made});
        return true;
    }

    bool Copy(const std::wstring& from, const std::wstring& to, std::string_view what) {
        const bool made = !FileExists(to);
        if (made) {
            if (const FsResult result = CopyWholeFile(from, to); result != FsResult::Ok) return Failed(to, result);
            // Templates come from a folder that may be read-only as a whole; only what has to be is kept so.
            if (const FsResult result = Files().SetReadOnly(to, GetNameFromPath(to) == kUnits);
                result != FsResult::Ok) {
                return Failed(to, result);
            }
        }
        things.push_back({to, std::string(what), made});
        return true;
    }

    bool Text(const std::wstring& path, std::string_view text, std::string_view what) {
        const bool made = !FileExists(path);
        if (made) {
            if (const FsResult result = SaveWholeFile(path, text); result != FsResult::Ok) return Failed(path, result);
        }
        things.push_back({path, std::string(what), made});
        return true;
    }

    bool General(const std::wstring& from, const std::wstring& to) {
        if (!Folder(to, "general data")) return false;
        std::vector<FolderEntry> entries;
        if (const FsResult result = Files().List(from, entries); result != FsResult::Ok) return Failed(from, result);
        for (const FolderEntry& entry : entries) {
            const bool good = entry.isFolder ? General(from + entry.name + L"/", to + entry.name + L"/")
                                             : Template(from + entry.name, to + entry.name);
            if (!good) return false;
        }
        return true;
    }

    bool Template(const std::wstring& from, const std::wstring& to) {
        std::wstring folder, name, extension;
        SplitPath(to, folder, name, extension);
        const bool definition = extension == L"adf";
        const bool isNew = !FileExists(to);
        if (!Copy(from, to, definition ? "application definition" : "general data")) return false;
        if (!definition || !isNew) return true;
        ProtectedFileObject file;
        return file.FileOpen(to, false, kOpenRead) || Failed(to, file.LastResult());  // signs it
    }

    bool Settings(const std::wstring& system) {
        const std::wstring path = system + std::wstring(ORV_DEF_FILENAME);
        const bool isNew = !FileExists(path);
        if (!Copy(templates + std::wstring(ORV_DEF_FILENAME), path, "settings")) return false;
        if (!isNew) return true;
        OrvIniFile_IO settings;
        const auto folder = [&](int location, const std::wstring& value) {
            return settings.SetItem(DATA_PATH_SECTION, pathKeys[static_cast<std::size_t>(location)], value, true);
        };
        const std::wstring projects = plan.projects.empty() ? plan.root + L"Projects/" : plan.projects;
        const bool set = settings.Initialise(system) && settings.SetProjectPath(projects) &&
                         settings.SetUserGeneralPath(plan.root + L"User/") &&
                         settings.SetUseDefaultCommonPath(plan.common.empty()) &&
                         (plan.common.empty() || settings.SetCommonProjectFilesPath(plan.common)) &&
                         folder(kLocationGeneral, plan.root + L"General/") &&
                         folder(24, plan.root + L"ChartDatabase/") && folder(26, plan.root + L"ExternalData/") &&
                         settings.FileSave(path, 0, kSave);
        return set || Failed(path, settings.LastResult());
    }

    bool Open(const std::wstring& system) {
        session.options.systemFolder = PathToBytes(system);
        return OpenInstallation(session);
    }

    bool Folders() {
        for (const FolderRow& row : kFolders) {
            std::wstring path;
            if (!DataSearch::GetDataSearch().GetDataPathInfo(row.location, path) || path.empty()) continue;
            if (!Folder(path, row.what)) return false;
        }
        return true;
    }

    Session& session;
    const InstallationPlan& plan;
    std::vector<MadeThing>& things;
    std::wstring templates;
};

}  // namespace

std::wstring SystemFolderOf(const std::wstring& root) {
    return WithSeparator(root) + L"system/";
}

bool MakeInstallation(Session& session, const InstallationPlan& plan, std::vector<MadeThing>& things) {
    return Maker(session, plan, things).Make();
}

}  // namespace orv::cfg
