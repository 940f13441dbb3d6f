#include <algorithm>
#include <array>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/text/CaseFold.h"
// Upward: DataSearch owns the levels file of the site and turns it into what the user's level denies, and is asked for
// the user of a station without log-in.
#include "users/UserAccessLevelsFile.h"
#include "users/UserAccountsFile.h"

namespace orv {

void DataSearch::LoadAllowedItems() {
    ualInvalid = !accessLevels->ReadUserAccessLevelsFile();
    deniedItems.clear();
    // Menus ask for each of their items again and again: names in lower case and ids are sorted to be found fast.
    levelApps.clear();
    for (const std::wstring& application : accessLevels->Applications()) levelApps.push_back(ToLower(application));
    std::sort(levelApps.begin(), levelApps.end());
    levelApps.erase(std::unique(levelApps.begin(), levelApps.end()), levelApps.end());
    levelIndex = GetLevelIndex(userLevel);
    for (const std::wstring& application : levelApps) {
        std::vector<int>& denied = deniedItems.emplace_back();
        for (const std::wstring_view prefix : {UAL_ITEM_PREFIX, UAL_OPTION_PREFIX}) {
            for (const std::wstring& text : accessLevels->GetItems(application, std::wstring(prefix))) {
                UserAccessItem item;
                if (item.Parse(text) && !item.Allows(levelIndex)) denied.push_back(item.id);
            }
        }
        std::sort(denied.begin(), denied.end());
    }
}

int DataSearch::GetLevelIndex(const std::wstring& name) {
    accessLevels->ReadUserAccessLevelsFile();
    return std::max(accessLevels->UserAccessLevelIndex(name), 0);
}

void DataSearch::SetUserAccessLevel(const std::wstring& name) {
    userLevel = name;
    levelIndex = GetLevelIndex(name);
}

bool DataSearch::PermissionToUseItem(int id) const {
    return PermissionToUseItem(appName, id);
}

bool DataSearch::PermissionToUseItem(const std::wstring& application, int id) const {
    if (ualInvalid) return true;
    std::array<wchar_t, 64> room;  // asked for each item of a menu: no memory for a name of the usual length
    std::wstring longName;
    std::wstring_view wanted(room.data(), application.size());
    if (application.size() <= room.size()) {
        std::transform(application.begin(), application.end(), room.begin(), LowerChar);
    } else {
        wanted = longName = ToLower(application);
    }
    const auto app = std::lower_bound(levelApps.begin(), levelApps.end(), wanted);
    if (app == levelApps.end() || *app != wanted) return true;
    const std::vector<int>& denied = deniedItems[static_cast<std::size_t>(app - levelApps.begin())];
    return !std::binary_search(denied.begin(), denied.end(), id);
}

// Items and options share one list of ids.
bool DataSearch::PermissionToUseOption(int id) const {
    return PermissionToUseItem(id);
}

void DataSearch::GetAllAppItems(int level, int value, const std::wstring& prefix, std::vector<int>& out) const {
    out.clear();
    const std::wstring wanted = prefix.empty() ? std::wstring(UAL_ITEM_PREFIX) : prefix;
    for (const std::wstring& text : accessLevels->GetItems(appName, wanted)) {
        UserAccessItem item;
        if (!item.Parse(text) || level < 0 || level >= item.levels.Size()) continue;
        int number = 0;
        if (value == -1 || (item.levels.GetItem(level, number) && number == value)) out.push_back(item.id);
    }
}

std::vector<std::wstring> DataSearch::GetUserLevels() const {
    return accessLevels->Levels();
}

std::wstring DataSearch::GetDefaultUserName() const {
    return UserAccountsFile().GetDefaultUserName();
}

}  // namespace orv
