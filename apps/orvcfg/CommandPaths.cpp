#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct NoArguments {};

/// Where the folder of a location comes from.
enum class Origin {
    Data,         ///< the program's data folder
    System,       ///< --system, or the place it is looked for
    Program,      ///< folder of the running program
    Setting,      ///< ORV.ini, under the location's key
    Current,      ///< --project, else as Setting
    Projects,     ///< --projects-root, else as Setting
    Common,       ///< --common, else ORV.ini
    ProjectFile,  ///< the project's own file
    Below,        ///< a sub-folder of another location
};

struct Row {
    Origin origin;
    int base = -1;  ///< location that a relative value or a sub-folder lies below
    std::wstring_view absent = {};
    bool hasDefault = false;
};
constexpr Row Fallback(int base, std::wstring_view value) {
    return {Origin::Setting, base, value, true};
}

constexpr std::array<Row, kLocationCount> kRows = {{
    /*  0 */ {Origin::Data},
    /*  1 */ {Origin::Setting, 0},
    /*  2 */ {Origin::Current, 4},
    /*  3 */ {Origin::ProjectFile, 2},
    /*  4 */ {Origin::Projects},
    /*  5 */ {Origin::Setting},
    /*  6 */ {Origin::Setting, 2},
    /*  7 */ {Origin::Setting, 0},
    /*  8 */ {Origin::Common},
    /*  9 */ {Origin::Below, 1},
    /* 10 */ {Origin::System},
    /* 11 */ {Origin::Below, 1},
    /* 12 */ Fallback(2, L"Reports"),
    /* 13 */ {Origin::ProjectFile, 2},
    /* 14 */ Fallback(2, L"Multimedia"),
    /* 15 */ {Origin::Below, 1},
    /* 16 */ {Origin::Below, 1},
    /* 17 */ Fallback(2, L"SonarTargets"),
    /* 18 */ {Origin::Below, 0},
    /* 19 */ {Origin::Below, 0},
    /* 20 */ Fallback(2, L"Camera Images"),
    /* 21 */ {Origin::Below, 1},
    /* 22 */ {Origin::Below, 0},
    /* 23 */ Fallback(2, L""),
    /* 24 */ {Origin::Setting, 0},
    /* 25 */ {Origin::Below, 8},
    /* 26 */ {Origin::Setting},
    /* 27 */ {Origin::Below, 1},
    /* 28 */ {Origin::Below, 1},
    /* 29 */ {Origin::Program},
    /* 30 */ {Origin::Below, 22},
    /* 31 */ {Origin::Below, 1},
    /* 32 */ {Origin::Below, 0},
    /* 33 */ {Origin::Setting},
    /* 34 */ {Origin::Below, 8},
}};

class PathReport {
public:
    explicit PathReport(Session& forSession) : session(forSession), search(DataSearch::GetDataSearch()) {}

    Table Make() {
        Table table({{"No", "location", true},
                     {"Name", "name"},
                     {"There", "exists"},
                     {"Folder", "folder"},
                     {"Comes from", "origin"}});
        for (int location = 0; location < kLocationCount; ++location) {
            std::wstring folder;
            const bool known = !(LiesInProject(location) && search.GetCurrentProjectName().empty()) &&
                               search.GetDataPathInfo(location, folder) && !folder.empty();
            const std::string origin = OriginText(location);
            const Cell none = Cell::Missing(Lacking(location));
            table.Add({Cell::Count(location), Cell::Of(Key(location)), known ? Cell::Flag(FolderExists(folder)) : none,
                       known ? Cell::Path(folder) : none, Cell::Of(origin)});
        }
        return table;
    }

private:
    static std::wstring_view Key(int location) { return pathKeys[static_cast<std::size_t>(location)]; }

    std::string SettingText(int location) const {
        std::wstring value;
        const std::string key = "ORV.ini " + ToUtf8(Key(location));
        const Row& row = kRows[static_cast<std::size_t>(location)];
        if (!search.GetOrvIni().GetItem(DATA_PATH_SECTION, Key(location), value)) {
            return row.hasDefault ? "default " + Shown(row.absent) + Base(row) : key + ", not set";
        }
        return key + "=" + PathToBytes(value) + (IsAbsolutePath(value) ? "" : Base(row));
    }

    std::string OriginText(int location) const {
        const Row& row = kRows[static_cast<std::size_t>(location)];
        switch (row.origin) {
            case Origin::Data:
                return "data folder of the program";
            case Origin::System:
                return session.options.systemFolder.empty() ? "system folder as found" : "--system";
            case Origin::Program:
                return "folder of the program";
            case Origin::Setting:
                return SettingText(location);
            case Origin::Current:
                return session.options.project.empty() ? SettingText(location) : "--project" + Base(row);
            case Origin::Projects:
                return session.options.projectsRoot.empty() ? SettingText(location) : "--projects-root";
            case Origin::Common:
                return CommonText(location);
            case Origin::ProjectFile:
                return ProjectText(location);
            case Origin::Below:
                break;
        }
        return "sub-folder of " + std::to_string(row.base);
    }

    std::string CommonText(int location) const {
        if (!session.options.common.empty()) return "--common";
        bool standard = true;
        search.GetOrvIni().GetUseDefaultCommonPath(standard);
        return standard ? "default below ORV.ini Projects" : SettingText(location);
    }

    std::string ProjectText(int location) const {
        std::wstring value;
        const ProjectDefinition& project = search.GetProjectDefinition();
        const bool set =
            location == kLocationLogData ? project.GetLogDataPath(value) : project.GetLogDataBackupPath(value);
        if (!set) return "project file, not set";
        return "project file: " + Shown(value) + (IsAbsolutePath(value) ? "" : " in 2");
    }

    static std::string Shown(std::wstring_view value) { return value.empty() ? "(empty)" : PathToBytes(value); }
    static std::string Base(const Row& row) { return row.base < 0 ? "" : " in " + std::to_string(row.base); }

    /// Why a location has no folder: its own item, or the location it lies below.
    std::string Lacking(int location) const {
        const Row& row = kRows[static_cast<std::size_t>(location)];
        std::wstring base;
        if (LiesInProject(location) && search.GetCurrentProjectName().empty()) {
            return "no project is selected (--project)";
        }
        if (row.origin == Origin::ProjectFile) return "the project names none";
        if (row.origin == Origin::Below && (!search.GetDataPathInfo(row.base, base) || base.empty())) {
            return "location " + std::to_string(row.base) + " has no folder";
        }
        return "the settings name none";
    }

    Session& session;
    const DataSearch& search;
};

/// The folders of logs are the project's; its file is read as it is, nothing else of the project is opened.
void ReadProject(Session& session) {
    const std::wstring name = ChosenProject(session);
    if (name.empty()) return;
    const std::wstring path = ProjectFile(name);
    if (!FileExists(path)) {
        session.Note(PathToBytes(path) + ": no such project file; its own folders are left out");
        return;
    }
    DataSearch::GetDataSearch().GetProjectDefinition().FileObject::FileOpen(path, kOpenRead);
}

ExitCode Paths(Session& session, const NoArguments&) {
    if (!OpenInstallation(session)) return kCannotRun;
    ReadProject(session);
    Document::Print(session, PathReport(session).Make());
    return kAllGood;
}

}  // namespace

void AddPaths(CLI::App& app, Session& session) {
    CLI::App* command = AddCommand(app, "paths", "List every folder of the installation and where it comes from",
                                   "  orvcfg --system /srv/survey/system --project Harbour paths\n"
                                   "  orvcfg paths --json | jq -r '.[] | select(.name==\"GeoidModels\").folder'");
    OnRun(command, session, std::make_shared<NoArguments>(), Paths);
}

}  // namespace orv::cfg
