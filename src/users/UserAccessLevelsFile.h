#pragma once

#include <string>
#include <vector>

#include "core/COrvString.h"
#include "core/FileObject.h"

namespace orv {

/// A menu item or an option, as the file holds it: "key = label;id;allowed,allowed,...", one number a level.
struct ORV_EXPORT UserAccessItem {
    std::wstring key, label;
    int id = 0;
    COrvString levels{L','};

    bool Parse(const std::wstring& text);  ///< false for any other shape
    /// 0 denies, anything else allows; a level beyond the list, or no number there, isn't denied either.
    bool Allows(int level) const;
};

/// The access levels of a site: which menu items and options of each application a level may use. The file is named by
/// the project's application definition, with the extension .ual. Main thread.
class ORV_EXPORT UserAccessLevelsFile : public FileObject {
public:
    /// Reads and verifies the file of the current project; false if there is none or it doesn't verify.
    bool ReadUserAccessLevelsFile();
    void Take(const FileObject& verified);                     ///< the levels of a file that has been read already
    int UserAccessLevelIndex(const std::wstring& name) const;  ///< exact match, -1 if unknown
    /// "key = value" of each item of an application (name ignoring case) whose key starts with `prefix`.
    std::vector<std::wstring> GetItems(const std::wstring& application, const std::wstring& prefix) const;
    void Clear();  ///< empties both lists
    /// Deletes the levels file of the system folder and copies its backup in its place; results aren't looked at.
    void RestoreFromBackupFile();
    const std::vector<std::wstring>& Levels() const { return levels; }
    const std::vector<std::wstring>& Applications() const { return applications; }

private:
    std::vector<std::wstring> levels, applications;
};

}  // namespace orv
