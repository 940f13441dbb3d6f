#include "core/DataSearch.h"

#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/os/ProgramPath.h"
#include "platform/service/BrandingConfig.h"
#include "platform/service/Multibeam.h"
#include "platform/text/PathText.h"
// Upward: every application reaches its project, its file history and its users' rights through this one object, which
// owns them, and opening a project gives the background workers their settings.
#include "housekeeping/DiskSpaceManager.h"
#include "housekeeping/FileHistoryBackup.h"
#include "project/ProjectDefinition.h"
#include "users/UserAccessLevelsFile.h"

namespace orv {

namespace {

constexpr std::size_t kLongestProgramPath = 260;
constexpr std::size_t kLongestProjectPath = 520;

// The registry is made first, so that it is there as long as whoever asks it.
std::unique_ptr<DataSearch>& Instance() {
    GetFileTypeList();
    static std::unique_ptr<DataSearch> instance;
    return instance;
}

}  // namespace

DataSearch& DataSearch::GetDataSearch() {
    std::unique_ptr<DataSearch>& instance = Instance();
    if (!instance) instance.reset(new DataSearch);
    return *instance;
}

void DataSearch::SetDataSearch(std::unique_ptr<DataSearch> dataSearch) {
    Instance() = std::move(dataSearch);
}

DataSearch::DataSearch()
    : projectDefinition(std::make_shared<ProjectDefinition>()),
      fileHistory(std::make_unique<FileHistory>()),
      accessLevels(std::make_unique<UserAccessLevelsFile>()) {
    GetFileTypeList();  // for hosts that hold an object of their own
}

DataSearch::~DataSearch() = default;

bool DataSearch::Fail(int status) const {
    SetErrorStatus(status);
    return false;
}

bool DataSearch::Initialise(std::wstring settingsFolder, bool requireAppDef, std::wstring appDefName, bool readUserDef,
                            std::wstring projectRoot, std::wstring commonFolder) {
    SetErrorStatus(kSearchOk);
    isInit = false;
    if (requireAppDef && appDefName.empty()) return Fail(kSearchNoAppDefName);
    projectRootPath = ToNativePath(projectRoot);
    commonPath = ToNativePath(commonFolder);
    useAppDef = requireAppDef;
    useUserDef = readUserDef;
    systemFolder = ToNativePath(settingsFolder);

    std::wstring program, extension;
    if (!GetProgramPath(program, kLongestProgramPath)) return Fail(kSearchNoProgramPath);
    SplitPath(program, appPath, appName, extension);
    exePath = appPath;
    CheckAppPathForDevelopEnvironment(appPath);

    if (systemFolder.empty()) {
        const BrandingConfig& branding = BrandingConfig::Instance();
        if (!branding.GetRootProgramDataFolder(systemFolder)) return false;
        systemFolder = WithSeparator(systemFolder) + branding.GetProgramDataFolder();
    }

    GetFileTypeList().Initialise();
    orvIni.FileClose();
    if (!orvIni.Initialise(systemFolder)) return Fail(kSearchNoSettings);
    if (!fileTypesIni.FileOpen(appPath + std::wstring(FILETYPES_DEF_FILENAME), kOpenRead)) {
        return Fail(kSearchNoSettings);
    }
    if (useAppDef && !OpenAppDef(appDefName)) return false;
    if (useUserDef && !OpenUserDef()) return false;
    if (!InitFileTypes()) return false;
    isInit = true;
    return true;
}

bool DataSearch::OpenAppDef(const std::wstring& appDefName) {
    const CFileType* type = GetFileTypeList().GetFileTypeID(kFileTypeAppDef);
    std::wstring extension, folder, defaultName;
    if (!type || !GetFileInfo(type, extension, folder, defaultName)) return Fail(kSearchNoAppDefLocation);
    std::wstring path = folder + appDefName + extension;
    if (!FileExists(path)) {
        GetDataPathInfo(kLocationAppDefs, folder);
        path = folder + appDefName + extension;
    }
    // A definition that isn't there forbids everything and is no start-up error: the host can still select another.
    appDef.Initialise(path, false);
    return appDef.GetErrorStatus() != kFileBadChecksum || Fail(kSearchAppDefChecksum);
}

bool DataSearch::OpenUserDef() {
    std::wstring name, folder;
    if (!orvIni.GetUserProfileName(name)) return Fail(kSearchNoUserProfile);
    GetDataPathInfo(kLocationSystem, folder);
    return userDef.Initialise(folder + name, false) || Fail(kSearchNoUserDef);
}

bool DataSearch::InitFileTypes() {
    const CFileTypeList& list = GetFileTypeList();
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    for (bool more = list.GetFirst(iterator, key, type); more; more = list.GetNext(iterator, key, type)) {
        // Rights of a definition that was in force before must not outlive it.
        type->SetPermissions(false, false, false);
    }
    for (bool more = list.GetFirst(iterator, key, type); more; more = list.GetNext(iterator, key, type)) {
        bool supported = true, create = true, select = true;
        const auto narrow = [&](const ProgramDefFile_IO& definition) {
            bool maySupport = false, mayCreate = false, maySelect = false;
            int location = -1;
            if (definition.GetFilePermissions(key, maySupport, mayCreate, maySelect, &location)) {
                supported = supported && maySupport;
                create = create && mayCreate;
                select = select && maySelect;
                return true;
            }
            return definition.LastRowAbsent();
        };
        if (useAppDef && !narrow(appDef)) continue;  // nobody vouches for the type: it stays unsupported
        if (useUserDef && !narrow(userDef)) return Fail(kSearchUserDefFailed);
        type->SetPermissions(create, select, supported);
    }
    return true;
}

void DataSearch::Finalize() {}

bool DataSearch::InitProject(std::wstring projectName, bool saveCoordSys) {
    if (!isInit) return false;
    SetErrorStatus(kSearchOk);
    const bool named =
        projectName.empty() ? orvIni.GetCurrentProjectName(projectName) : orvIni.SetCurrentProjectName(projectName);
    if (!named) return false;

    std::wstring path;
    if (!GetFullPath(kFileTypeProject, path)) {
        // No projects folder in the settings: the projects lie beside the program.
        std::wstring program, folder, title, extension;
        if (!GetProgramPath(program, kLongestProjectPath)) return Fail(kSearchNoProgramPath);
        SplitPath(program, folder, title, extension);
        CheckAppPathForDevelopEnvironment(folder);
        path = folder + projectName + kPathSeparator + std::wstring(PROJECT_FILENAME);
        orvIni.SetProjectPath(folder);
    }
    if (!projectDefinition->Init(path, saveCoordSys)) return false;
    LoadHousekeeping();

    int showNoDetectionBeams = 0;
    projectDefinition->GetItem(OPTIONS_SECTION, SHOW_NO_DETECTION_BEAMS, showNoDetectionBeams);
    Multibeam::SetShowNoDetectionBeams(showNoDetectionBeams);
    return true;
}

void DataSearch::LoadHousekeeping() {
    FileHistoryBackup& backup = FileHistoryBackup::Instance();
    DiskSpaceManager& diskSpace = DiskSpaceManager::Instance();
    // Their settings may change only while they rest; the host wakes them again.
    backup.Stop();
    diskSpace.Stop();
    fileHistory->LoadSettings(*this);
    backup.LoadSettings(*this);
    diskSpace.LoadSettings(*this);
}

bool DataSearch::InitProjectSUI() {
    if (!isInit) return false;
    SetErrorStatus(kSearchOk);
    const std::wstring path = systemFolder + std::wstring(PROJECT_SUI_FILENAME);
    if (!FileExists(path) && !projectDefinition->CreateDefaultSUIFile(path)) return false;
    return projectDefinition->InitSUI(path);
}

void DataSearch::SetProjectDefinition(std::shared_ptr<ProjectDefinition> project) {
    if (project) projectDefinition = std::move(project);
}

bool DataSearch::GetLanguage(std::wstring& out) const {
    return orvIni.GetLanguage(out);
}

bool DataSearch::GetCurrentProjectName(std::wstring& out) const {
    return orvIni.GetCurrentProjectName(out);
}

std::wstring DataSearch::GetCurrentProjectName() const {
    std::wstring name;
    orvIni.GetCurrentProjectName(name);
    return name;
}

}  // namespace orv
