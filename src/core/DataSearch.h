#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/CFileType.h"
#include "core/COrvString.h"
#include "core/FileObject.h"
#include "core/OrvIniFile_IO.h"
#include "core/ProgramDefFile_IO.h"
#include "platform/service/GetStringFunctionObject.h"

namespace orv {

class FileHistory;
class ProjectDefinition;
class UserAccessLevelsFile;
struct DataSearchStatus;

/// Status of `DataSearch`, beside the bool of a query.
enum DataSearchStatusCode : int {
    kSearchOk = 0,
    kSearchNoAppDefName = 1,  ///< an application definition is required and no name was given
    kSearchNoSettings = 2,    ///< settings or file type definition can't be opened
    kSearchAppDefChecksum = 4,
    kSearchNoUserDef = 5,
    kSearchNoAppDefLocation = 6,
    kSearchNoUserProfile = 7,
    kSearchUnknownName = 9,  ///< the application definition has no such name or key
    kSearchAppDefFailed = 10,
    kSearchUserDefFailed = 11,
    kSearchUnknownFileType = 12,
    kSearchLocationOutOfRange = 13,
    kSearchNoProgramPath = 14,
    kSearchNoDescription = 17,
};

inline constexpr int kLocationCount = 35;  ///< path locations 0..34
inline constexpr int kNoLimit = 0x7FFFFFFF;

/// The one object through which an application finds everything: where the system runs from, its settings, the
/// application definition and the optional user definition, the project, paths, limits, permissions and rights.
///
/// A host registers what it needs through `OrvConfigureInitializer` (or calls just `RegisterGeoidModels`, if it has no
/// ports), then `Initialise` once at start, then `InitProject`.
/// First call on the main thread, before any background work; no lock of its own. Background workers call read queries
/// only, after `InitProject`. Most queries set the status to 0 first, return false on failure and leave what they don't
/// fill alone.
class ORV_EXPORT DataSearch {
public:
    static DataSearch& GetDataSearch();
    virtual ~DataSearch();
    /// `settingsFolder`: where ORV.ini lies, ends in a separator; empty takes the installation's own. `projectRoot` and
    /// `commonPath` override the folders of the settings unless empty. On failure what was read stays and
    /// `GetErrorStatus` tells why.
    virtual bool Initialise(std::wstring settingsFolder, bool requireAppDef, std::wstring appDefName, bool useUserDef,
                            std::wstring projectRoot, std::wstring commonPath);

    /// The same start again with another application definition, in the same folders.
    bool ReInitialise(const std::wstring& appDefName) {
        return Initialise(systemFolder, true, appDefName, useUserDef, projectRootPath, commonPath);
    }

    DataSearch(const DataSearch&) = delete;
    DataSearch& operator=(const DataSearch&) = delete;

    // Start: DataSearch.cpp

    bool IsInit() const { return isInit; }
    void Finalize();                                ///< does nothing; hosts call it
    void DisableAppDefReq() { useAppDef = false; }  ///< later merges ignore the application definition
    /// Opens a project by name, or the current one of the settings when empty; a name given becomes the current project
    /// in memory. What `ProjectDefinition::Init` does to the disk is told there. On false the reason is in the status
    /// or, when that is 0, in `GetProjectDefinition().LastProblem()`. The history and disk space workers are stopped:
    /// the host starts them again for the project that is open then.
    bool InitProject(std::wstring projectName, bool saveCoordSys);
    /// The small project file that carries only a coordinate system, made on first use.
    bool InitProjectSUI();
    int GetErrorStatus() const { return errorStatus.load(std::memory_order_relaxed); }
    OrvIniFile_IO& GetOrvIni() { return orvIni; }
    const OrvIniFile_IO& GetOrvIni() const { return orvIni; }
    ProgramDefFile_IO& GetAppDef() { return appDef; }
    const ProgramDefFile_IO& GetAppDef() const { return appDef; }
    ProgramDefFile_IO& GetUserDef() { return userDef; }
    const ProgramDefFile_IO& GetUserDef() const { return userDef; }
    ProjectDefinition& GetProjectDefinition() const { return *projectDefinition; }
    std::shared_ptr<ProjectDefinition> GetSharedProjectDefinition() const { return projectDefinition; }
    void SetProjectDefinition(std::shared_ptr<ProjectDefinition> project);  ///< a null pointer is ignored
    bool GetLanguage(std::wstring& out) const;
    bool GetCurrentProjectName(std::wstring& out) const;
    std::wstring GetCurrentProjectName() const;
    const std::wstring& GetAppName() const { return appName; }
    void SetFileHistoryTime(std::int64_t utcSeconds) { fileHistoryTime = utcSeconds; }
    std::int64_t GetFileHistoryTime() const { return fileHistoryTime; }

    // Limits and permissions: DataSearchLimits.cpp. Each merges the two definitions: a maximum is the lower one, a flag
    // true only if both allow. A maximum that nobody restricts is kNoLimit.

    bool GetFilePermissions(const CFileType* type, bool& supported, bool& create, bool& select) const;
    bool GetFilePermissions(unsigned id, bool& supported, bool& create, bool& select) const;
    bool GetFileSupportFlag(const CFileType* type, bool& out) const;
    bool GetFileSupportFlag(unsigned id, bool& out) const;
    bool GetFileCreateFlag(const CFileType* type, bool& out) const;
    bool GetFileCreateFlag(unsigned id, bool& out) const;
    bool GetFileSelectFlag(const CFileType* type, bool& out) const;
    bool GetFileSelectFlag(unsigned id, bool& out) const;
    bool GetFileBmpID(unsigned id, unsigned& out) const;
    bool GetViewMax(const std::wstring& key, int& out) const;
    bool GetViewMax(unsigned id, int& out) const;
    bool GetLayerMax(const std::wstring& name, int& out) const;
    bool GetMultiObjectFlag(bool& out) const;
    bool GetRelativeObjectFlag(bool& out) const;
    bool GetDynamicObjectFlag(bool& out) const;
    bool GetMultiMax(int& out) const;
    bool GetRelativeMax(int& out) const;
    bool GetVesselPermissions(bool& multi, int& multiMax, bool& relative, int& relativeMax, bool& dynamic) const;
    bool GetDeviceMax(unsigned type, int& out) const;
    bool GetComputationMax(unsigned type, int& out) const;
    bool GetDatasourceMax(unsigned type, int& out) const;
    bool GetExecutablePermission(unsigned id, bool& out, int itemId = 0) const;
    bool GetExecutablePermission(const std::wstring& key, bool& out, int itemId = 0) const;
    bool GetExecutableName(unsigned id, std::wstring& out) const;
    bool GetExecutableName(const std::wstring& key, std::wstring& out) const;
    bool GetNetworkSupportFlag(bool& out) const;
    bool GetRemoteNumMax(int& out) const;
    bool GetPresentationsMax(int& out) const;
    bool GetNetworkPermissions(bool& support, int& remotes, int& presentations) const;
    bool GetCoordSysKey(std::wstring& out) const;
    bool GetSimulationFlag(bool& out) const;
    bool GetDisableLoggingFlag(bool& out) const;
    bool GetLoggingPermission(int id, bool& out) const;
    bool GetExportPermission(int id, bool& out) const;
    bool GetGuidancePermission(int id, bool& out, int itemId = 0) const;
    bool GetGuidancePermission(int itemId) const;
    bool GetToolPermission(const std::wstring& name, bool& out) const;
    bool GetToolPermission() const;
    bool UseUserAccessLevels() const;

    // Paths and files: DataSearchPaths.cpp. Folders end in a separator unless empty; extensions carry their dot.

    bool GetDataPathInfo(int location, std::wstring& out) const;
    bool GetFullPath(unsigned id, std::wstring& name) const;
    bool GetFullBackupLogPath(unsigned id, std::wstring& name) const;
    bool GetFilePath(const CFileType* type, std::wstring& out) const;
    bool GetFilePath(unsigned id, std::wstring& out) const;
    bool GetFileLocation(unsigned id, int& out) const;
    bool GetFileExtension(const CFileType* type, std::wstring& out) const;
    bool GetFileExtension(unsigned id, std::wstring& out) const;
    bool GetFileInfo(const CFileType* type, std::wstring& extension, std::wstring& path, std::wstring& name) const;
    bool GetFileInfo(unsigned id, std::wstring& extension, std::wstring& path, std::wstring& name) const;
    bool GetDefaultFileName(const CFileType* type, std::wstring& out) const;
    bool GetDefaultFileName(unsigned id, std::wstring& out) const;
    bool GetFileDescription(const CFileType* type, std::wstring& out) const;
    bool GetFileDescription(unsigned id, std::wstring& out) const;
    bool GetFileDescription(unsigned id, const std::wstring& subType, std::wstring& out) const;
    bool GetFileDesc(int location, std::vector<std::wstring>& out, bool onlyCreatable) const;
    bool GetFileNames(unsigned id, std::vector<std::wstring>& out) const;
    bool GetFileNames(unsigned id, std::vector<std::wstring>& out, const std::wstring& folder) const;
    bool GetFileNames(unsigned id, const COrvString& filter, std::vector<std::wstring>& out) const;
    bool GetFileNames(unsigned id, GetStringFunctionObject& visit, bool fullPath) const;
    bool GetFileNames(unsigned id, const COrvString& filter, GetStringFunctionObject& visit, bool fullPath) const;
    bool DoesFileExist(unsigned id, const std::wstring& name) const;
    bool GetTypeForExtension(const std::wstring& extension, unsigned& out) const;  ///< with the dot
    bool GetProjects(std::vector<std::wstring>& out) const;
    bool GetLogDataPaths(std::vector<std::wstring>& out) const;
    bool GetFileIDs(int location, std::vector<unsigned>& ids, int& count, int exportFilter) const;
    bool GetSupportedFileIDs(std::vector<unsigned>& ids, int& count, int exportFilter) const;
    bool GetExtFileIDs(const std::wstring& extension, std::vector<unsigned>& ids, int& count, int exportFilter) const;
    bool GetFileSubTypes(unsigned id, std::vector<std::wstring>& out) const;
    bool GetFileSubID(unsigned id, const std::wstring& name, int& out) const;
    bool GetFileSubTypeAttribs(unsigned id, const std::wstring& name, std::wstring& out) const;
    static std::vector<std::wstring> Split(const std::wstring& text, const std::vector<std::wstring>& separators,
                                           bool keepEmpty);
    /// As GetFullPath, but never a copy out of the file history: what is going to be written.
    bool GetFullPathForWriting(unsigned id, std::wstring& name) const;

    // Rights of the user's access level: DataSearchRights.cpp. Without a valid definition everything is allowed.

    void LoadAllowedItems();
    int GetLevelIndex(const std::wstring& name);        ///< 0, the first level, for an unknown name
    void SetUserAccessLevel(const std::wstring& name);  ///< the caller runs LoadAllowedItems
    bool PermissionToUseItem(int id) const;
    bool PermissionToUseItem(const std::wstring& application, int id) const;
    bool PermissionToUseOption(int id) const;
    void GetAllAppItems(int level, int value, const std::wstring& prefix, std::vector<int>& out) const;
    std::vector<std::wstring> GetUserLevels() const;  ///< those of the last read
    bool IsUalIniValid() const { return !ualInvalid; }
    std::wstring GetDefaultUserName() const;  ///< who is logged in without a password; empty if nobody

protected:
    DataSearch();
    /// Puts another object in the place of the single one. Only while no background work runs.
    static void SetDataSearch(std::unique_ptr<DataSearch> dataSearch);
    void SetErrorStatus(int status) const { errorStatus.store(status, std::memory_order_relaxed); }

private:
    friend struct DataSearchStatus;
    bool Fail(int status) const;
    bool InitFileTypes();
    void LoadHousekeeping();
    bool OpenAppDef(const std::wstring& appDefName);
    bool OpenUserDef();

    bool Ready() const;  ///< opens a query: status 0, false before `Initialise`
    template <class Ask>
    bool AskDefinitions(Ask ask) const;
    template <class Query>
    bool MergeMaximum(Query query, int& out) const;
    template <class Query>
    bool MergeFlag(Query query, bool& out, int itemId = 0) const;

    bool PathValue(int location, std::wstring& out) const;
    bool Setting(int location, std::wstring& out) const;
    bool CommonFilesPath(std::wstring& out) const;
    bool CompletePath(int location, const std::wstring& value, std::wstring& out) const;
    bool VisitFiles(unsigned id, const std::vector<std::wstring>& names, GetStringFunctionObject& visit,
                    bool fullPath) const;
    bool SubFolders(int location, std::vector<std::wstring>& out) const;

    bool isInit = false;
    bool useAppDef = false;
    bool useUserDef = false;
    std::wstring appPath, exePath, systemFolder, appName, projectRootPath, commonPath;
    FileObject fileTypesIni;
    ProgramDefFile_IO appDef, userDef;
    OrvIniFile_IO orvIni;
    std::shared_ptr<ProjectDefinition> projectDefinition;
    std::unique_ptr<FileHistory> fileHistory;  // always there
    std::int64_t fileHistoryTime = 0;
    mutable std::atomic<int> errorStatus = 0;  // workers' queries write it too
    std::wstring userLevel;
    std::unique_ptr<UserAccessLevelsFile> accessLevels;  // always there
    int levelIndex = 0;
    std::vector<std::vector<int>> deniedItems;
    std::vector<std::wstring> levelApps;
    bool ualInvalid = true;
};

/// The few other classes of the library that set the search status on the host's behalf do it through this.
struct DataSearchStatus {
    static void Set(int status) { DataSearch::GetDataSearch().SetErrorStatus(status); }
};

}  // namespace orv
