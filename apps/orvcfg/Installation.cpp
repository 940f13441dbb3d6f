#include "Installation.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "LookOnly.h"
#include "Session.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "core/DataSearchStatusText.h"
#include "core/OrvConfigureInitializer.h"
#include "platform/os/FileTools.h"
#include "platform/os/ProgramPath.h"
#include "platform/service/BrandingConfig.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::wstring_view kEncryptedSection = L"Encrypted";

/// What to do about a start-up status.
struct StatusRemedy {
    int status;
    std::string_view remedy;
};
constexpr StatusRemedy kStatusRemedies[] = {
    {kSearchNoAppDefName, "Name one with --app-def."},
    {kSearchNoSettings, "See \"orvcfg config check\" of that file."},
    {kSearchAppDefChecksum, "Put the supplier's file back, or sign it with \"orvcfg config sign\"."},
    {kSearchNoUserDef, "Correct [UserProfile] in ORV.ini, or leave --user-def out."},
    {kSearchNoAppDefLocation, "Set General in [DataPath] of ORV.ini."},
    {kSearchNoUserProfile, "Set [UserProfile] in ORV.ini, or leave --user-def out."},
    {kSearchAppDefFailed, "Check it with \"orvcfg config check\"."},
    {kSearchUserDefFailed, "Check it with \"orvcfg config check\"."},
    {kSearchNoProgramPath, "Install it under a path of at most 260 characters."},
};

/// Opening a file without strict verification signs it again silently: what a host does. Whoever looks at the result
/// of a command must learn that the file was touched.
void NoteSigning(Session& session, const std::wstring& path) {
    ProtectedFileObject file;
    if (LookOnly::InForce() || !ReadAsItIs(path, file)) return;
    const FileState state = StateOf(file);
    if (state != FileState::ContentChanged && state != FileState::Unsigned) return;
    session.Note(PathToBytes(path) +
                 (state == FileState::Unsigned ? " carried no signature" : " was changed outside the suite") +
                 "; opening it as the applications do has signed it");
}

Trouble StatusTrouble(Session& session, const std::wstring& folder) {
    const DataSearch& search = DataSearch::GetDataSearch();
    if (search.GetErrorStatus() == kSearchNoSettings && search.GetOrvIni().IsInit()) {
        return {PathToBytes(DataRoot(session) + std::wstring(FILETYPES_DEF_FILENAME)),
                "The table of file types can't be read", "It comes with the program: install it again."};
    }
    const auto row = std::find_if(std::begin(kStatusRemedies), std::end(kStatusRemedies),
                                  [&](const StatusRemedy& entry) { return entry.status == search.GetErrorStatus(); });
    if (row == std::end(kStatusRemedies)) {
        return {PathToBytes(folder), "The installation can't be opened", "Check the settings in ORV.ini."};
    }
    return {PathToBytes(folder), ToUtf8(DataSearchStatusText(row->status)), std::string(row->remedy)};
}

}  // namespace

std::wstring AppDefFile(const std::wstring& name) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring path = name, folder;
    if (search.GetFullPath(kFileTypeAppDef, path) && FileExists(path)) return path;
    search.GetDataPathInfo(kLocationAppDefs, folder);
    return folder + name + L".adf";
}

// ---- arguments and folders

std::wstring PathArgument(std::string_view argument) {
    return ToNativePath(PathFromBytes(argument));
}

std::wstring TextArgument(std::string_view argument) {
    return FromUtf8(argument);
}

std::wstring AbsolutePath(std::wstring_view path) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(PathToBytes(path), failed);
    return failed ? std::wstring(path) : PathFromBytes(absolute.lexically_normal().native());
}

std::wstring SystemFolder(const Session& session) {
    if (!session.options.systemFolder.empty()) {
        return WithSeparator(AbsolutePath(PathArgument(session.options.systemFolder)));
    }
    const std::wstring here = WithSeparator(AbsolutePath(L"system"));
    if (FileExists(here + std::wstring(ORV_DEF_FILENAME))) return here;
    std::wstring root;
    if (!BrandingConfig::Instance().GetRootProgramDataFolder(root)) return here;
    return WithSeparator(root) + BrandingConfig::Instance().GetProgramDataFolder();
}

std::wstring DataRoot(Session& session) {
    std::wstring program;
    if (!GetProgramPath(program)) {
        session.Problem({}, "The system doesn't tell where this program lies, or its path is too long",
                        "Install it under a path of at most 260 characters.");
        return {};
    }
    std::wstring folder = GetFolderFromPath(program);
    CheckAppPathForDevelopEnvironment(folder);
    return folder;
}

bool RemoveTree(const std::wstring& folder) {
    std::error_code failed;
    std::filesystem::remove_all(PathToBytes(folder), failed);
    return !failed;
}

// ---- signed files

bool ReadAsItIs(const std::wstring& path, ProtectedFileObject& file) {
    return file.FileObject::FileOpen(path, kOpenRead);
}

FileState StateOf(const ProtectedFileObject& file) {
    if (file.HasSection(kEncryptedSection)) return FileState::Enciphered;
    switch (file.Verify()) {
        case ProtectedFileObject::Verification::Valid:
            return FileState::Valid;
        case ProtectedFileObject::Verification::ContentChanged:
            return FileState::ContentChanged;
        case ProtectedFileObject::Verification::TitleChanged:
            return FileState::TitleChanged;
        case ProtectedFileObject::Verification::Unsigned:
            break;
    }
    return FileState::Unsigned;
}

std::string_view FileStateText(FileState state) {
    switch (state) {
        case FileState::Valid:
            return "valid";
        case FileState::ContentChanged:
            return "content changed";
        case FileState::TitleChanged:
            return "title changed";
        case FileState::Enciphered:
            return "enciphered";
        case FileState::Unsigned:
            break;
    }
    return "unsigned";
}

// ---- the installation

std::optional<Trouble> TryInstallation(Session& session, bool withoutAppDef) {
    static OrvConfigureInitializer module;  // kept to the end, as hosts do
    module.RegisterComps();
    module.RegisterGeoidModel();
    const std::wstring folder = SystemFolder(session);
    session.Detail("system folder " + PathToBytes(folder));
    NoteSigning(session, folder + std::wstring(ORV_DEF_FILENAME));
    const auto override = [](const std::string& option) {
        return option.empty() ? std::wstring() : WithSeparator(AbsolutePath(PathArgument(option)));
    };
    DataSearch& search = DataSearch::GetDataSearch();
    if (search.Initialise(folder, !withoutAppDef, TextArgument(session.options.appDef), session.options.userDef,
                          override(session.options.projectsRoot), override(session.options.common))) {
        return std::nullopt;
    }
    return StatusTrouble(session, folder);
}

bool HasInstallation(Session& session) {
    const std::wstring folder = SystemFolder(session);
    const std::wstring settings = folder + std::wstring(ORV_DEF_FILENAME);
    if (FileExists(settings)) return true;
    const bool inside = FileExists(folder + L"system/" + std::wstring(ORV_DEF_FILENAME));
    session.Problem(PathToBytes(settings), "No such file, so there is no installation here",
                    inside ? "Did you mean --system \"" + PathToBytes(folder) + "system\"?"
                           : "Name the system folder with --system, or make an installation with \"orvcfg init\".");
    return false;
}

bool OpenInstallation(Session& session) {
    if (!HasInstallation(session)) return false;
    if (const std::optional<Trouble> trouble = TryInstallation(session)) {
        session.Problem(trouble->where, trouble->what, trouble->remedy);
        return false;
    }
    if (!DataSearch::GetDataSearch().GetAppDef().FileInitialised()) {
        session.Note("the application definition " + PathToBytes(AppDefFile(TextArgument(session.options.appDef))) +
                     " isn't there: every file type counts as unsupported. Name another with --app-def");
    }
    return true;
}

// ---- projects

std::wstring ChosenProject(const Session& session, std::wstring name) {
    if (name.empty()) name = TextArgument(session.options.project);
    return name.empty() ? DataSearch::GetDataSearch().GetCurrentProjectName() : name;
}

bool LiesInProject(int location) {
    constexpr int kInProject[] = {kLocationProject,      kLocationLogData,       kLocationFileHistory,
                                  kLocationReports,      kLocationBackupLogData, kLocationMultimedia,
                                  kLocationSonarTargets, kLocationCameraImages,  kLocationBackgroundCharts};
    return std::find(std::begin(kInProject), std::end(kInProject), location) != std::end(kInProject);
}

std::wstring ProjectFile(const std::wstring& name) {
    DataSearch& search = DataSearch::GetDataSearch();
    if (!name.empty()) search.GetOrvIni().SetCurrentProjectName(name);
    std::wstring path;
    search.GetFullPath(kFileTypeProject, path);
    return path;
}

bool HasProject(Session& session, const std::wstring& name) {
    DataSearch& search = DataSearch::GetDataSearch();
    std::wstring root;
    search.GetDataPathInfo(kLocationProjects, root);
    if (name.empty()) {
        session.Problem({}, "No project is selected",
                        "Name one with --project; \"orvcfg project list\" shows those of this installation.");
        return false;
    }
    if (FileExists(ProjectFile(name))) return true;
    std::vector<std::wstring> known;
    search.GetProjects(known);
    std::string remedy = DidYouMean(name, known);
    if (remedy.empty()) remedy = "\"orvcfg project list\" shows those of this installation.";
    session.Problem(PathToBytes(root), "There is no project \"" + ToUtf8(name) + "\"", remedy);
    return false;
}

std::optional<Trouble> TryProject(Session& session, const std::wstring& name) {
    DataSearch& search = DataSearch::GetDataSearch();
    const std::wstring path = ProjectFile(name);
    NoteSigning(session, path);
    if (search.InitProject(name, false)) return std::nullopt;
    const std::wstring& problem = search.GetProjectDefinition().LastProblem();
    return Trouble{PathToBytes(path), problem.empty() ? "The project can't be opened" : ToUtf8(problem),
                   "\"orvcfg project repair\" adds what an old or damaged project lacks."};
}

bool OpenProject(Session& session, std::wstring name) {
    name = ChosenProject(session, std::move(name));
    if (!HasProject(session, name)) return false;
    const std::optional<Trouble> trouble = TryProject(session, name);
    if (trouble) session.Problem(trouble->where, trouble->what, trouble->remedy);
    return !trouble;
}

}  // namespace orv::cfg
