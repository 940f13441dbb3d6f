#include <algorithm>
#include <set>

#include "../Document.h"
#include "../Session.h"
#include "Check.h"
#include "Vessels.h"
#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "project/AppConfig.h"
#include "users/UserAccessLevelsFile.h"
#include "users/UserAccountsFile.h"

namespace orv::cfg {

namespace {

constexpr const char* kOtherDefinition = "Remove some, or use another application definition.";

void LookAtVesselCount(Examination& examination) {
    std::wstring name, definition;
    examination.Project().GetAppConfiguration(name);
    examination.Project().GetAppDefinition(definition);
    std::wstring path = name + L"[" + definition + L"]";
    AppConfig configuration;
    const DataSearch& search = DataSearch::GetDataSearch();
    if (name.empty() || !search.GetFullPath(kFileTypeAppConfig, path) || !configuration.FileOpen(path, kOpenRead)) {
        return;  // told as a file that is missing
    }
    int vessels = 0;
    unsigned id = 0;
    for (bool more = configuration.GetFirstVesselId(id); more; more = configuration.GetNextVesselId(id)) {
        bool enabled = true;
        configuration.GetVesselEnable(id, enabled);
        if (enabled) ++vessels;
    }
    bool several = true, relative = true, dynamic = true;
    int most = kNoLimit, relatives = kNoLimit;
    if (!search.GetVesselPermissions(several, most, relative, relatives, dynamic)) return;
    if (!several) most = 1;
    if (vessels <= most) return;
    examination.Tell(PathToBytes(path),
                     std::to_string(vessels) + " vessels take part, and " + examination.session.options.appDef +
                         " permits " + std::to_string(most),
                     kOtherDefinition);
}

void LookAtFileTypes(Examination& examination) {
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    const CFileTypeList& types = GetFileTypeList();
    for (bool more = types.GetFirst(iterator, key, type); more; more = types.GetNext(iterator, key, type)) {
        if (type->IsSupported() || !LiesInProject(type->GetLocation()) || type->GetID() == kNoFileType) continue;
        const std::vector<std::wstring> files = examination.FilesOf(type->GetID());
        if (files.empty()) continue;
        examination.Tell(PathToBytes(files.front()),
                         "Files of type " + ToUtf8(key) + " are in the project (" + std::to_string(files.size()) +
                             "), and " + examination.session.options.appDef + " doesn't support them",
                         "Use an application definition that does, or move the files away.");
    }
}

std::wstring LevelsPath(const Examination& examination) {
    std::wstring definition;
    examination.Project().GetAppDefinition(definition);
    if (definition.empty()) definition = TextArgument(examination.session.options.appDef);
    return SystemFolder(examination.session) + definition + std::wstring(USER_ACCESS_LEVELS_EXTENSION);
}

/// Items that don't read are passed over, which allows them to everybody.
std::size_t UnreadableItems(const UserAccessLevelsFile& file) {
    std::size_t count = 0;
    for (const std::wstring& application : file.Applications()) {
        for (const std::wstring& text : file.GetItems(application, L"")) {
            UserAccessItem item;
            if (!item.Parse(text)) ++count;
        }
    }
    return count;
}

}  // namespace

void LookAtPermissions(Examination& examination) {
    // Without a definition nothing is permitted, and that has been told.
    if (!DataSearch::GetDataSearch().GetAppDef().FileInitialised()) return;
    LookAtVesselCount(examination);
    LookAtFileTypes(examination);
    TellVessels(examination, {VesselFinding::Maximum}, [](VesselSurvey& survey) { survey.CheckMaxima(); });
}

void LookAtRights(Examination& examination) {
    const std::wstring path = LevelsPath(examination);
    const std::string name = PathToBytes(path);
    if (!FileExists(path)) {
        if (!DataSearch::GetDataSearch().UseUserAccessLevels()) return;
        examination.Tell(name, "The application definition asks for access levels, and their file isn't there",
                         "Bring it back from a copy; the tool that edits access levels makes a new one.");
        return;
    }
    ProtectedFileObject file;
    const bool read = ReadAsItIs(path, file);
    if (!read || StateOf(file) != FileState::Valid) {
        examination.Tell(name,
                         read ? "The access levels don't verify (" + std::string(FileStateText(StateOf(file))) +
                                    "), so they count for nothing"
                              : "The access levels can't be read: " + ToUtf8(FsResultText(file.LastResult())),
                         "Bring the file back from a copy; \"orvcfg config sign\" accepts a change that was meant.");
        return;
    }
    UserAccessLevelsFile levels;
    levels.Take(file);
    if (levels.Levels().empty()) {
        examination.Tell(name, "The file names no access levels", "Name them in [USERLEVELS], lowest number first.");
    }
    if (const std::size_t odd = UnreadableItems(levels); odd > 0) {
        examination.Tell(name, std::to_string(odd) + " items can't be read and are passed over",
                         "An item is label;number;one figure a level, with commas between figures.");
    }
}

void LookAtAccounts(Examination& examination) {
    const UserAccountsFile accounts;
    const std::string file = PathToBytes(accounts.GetPathToFile());
    FileStatus status;
    if (Files().Status(accounts.GetPathToFile(), status) != FsResult::Ok || !status.exists) return;
    if (status.size % UserDataRecord::kSize != 0) {
        examination.Tell(file,
                         "The file ends within an account: " + std::to_string(status.size) +
                             " bytes are no multiple of " + std::to_string(UserDataRecord::kSize),
                         "It was cut short, and the last account is lost: bring it back from a copy.");
    }
    std::set<std::wstring> names;
    for (int i = 0; i < accounts.UserCount(); ++i) {
        const std::wstring name = accounts.UserName(i), level = accounts.UserLevel(i);
        const std::string who = "Account \"" + ToUtf8(name) + "\"";
        if (!names.insert(name).second) {
            examination.Tell(file, who + " is there twice, and the first one is taken",
                             "\"orvcfg users remove\" removes one.");
        }
        std::wstring layout;
        if (accounts.LevelCount() == 0 || accounts.GetLayoutForLevel(level, layout)) continue;
        examination.Tell(file,
                         who + " has access level \"" + ToUtf8(level) +
                             "\", which isn't defined, so it has the rights of the first one",
                         "\"orvcfg users modify --level\" gives it another.");
    }
}

}  // namespace orv::cfg
