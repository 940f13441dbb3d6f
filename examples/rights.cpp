// A user logs in, and the host asks what the user may do. Further arguments: name, password.
#include <users/UserAccountsFile.h>

#include "Start.h"

constexpr int kSaveProject = 57603;  // number of the menu item in the host

int main(int argc, char** argv) {
    if (argc != 5 || !Start(argc, argv)) return 1;

    // quote: rights
    orv::DataSearch& search = orv::DataSearch::GetDataSearch();
    const orv::UserAccountsFile accounts;
    std::wstring level;
    if (!accounts.ValidateUser(orv::FromUtf8(argv[3]), orv::FromUtf8(argv[4]), level)) {
        std::puts("no such user, or another password");
        return 1;
    }
    search.SetUserAccessLevel(level);
    search.LoadAllowedItems();
    const bool maySave = search.PermissionToUseItem(L"Acquisition", kSaveProject);
    // quote end
    std::printf("%s is %s and may%s save the project\n", argv[3], orv::ToUtf8(level).c_str(), maySave ? "" : " not");
    return 0;
}
