#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Export.h"
#include "surveydata/LogNaming.h"

namespace orv {

class ProtectedFileObject;

/// The form in which a user sets where a project logs to and how its logs are named. Works on the section DataPath of
/// the project file, which must outlive it. Main thread.
class ORV_EXPORT DirectorySetup {
public:
    explicit DirectorySetup(ProtectedFileObject& projectFile) : project(projectFile) {}

    /// Takes over what the project holds. Where volumes are exported for Boraciet, which knows automatic names only,
    /// the choice is set back to automatic in the file at once, even if the form is cancelled then. False if that
    /// couldn't be saved.
    [[nodiscard]] bool Open();
    /// Writes all of it; false if the project can't be saved.
    [[nodiscard]] bool Save();

    /// Asks for a folder; `path` holds where to begin, and then the choice. False if the user cancelled.
    using FolderDialog = std::function<bool(const std::wstring& title, std::wstring& path)>;
    bool BrowseBackupFolder(const FolderDialog& dialog);  ///< takes the choice into `backupFolder`

    // What the fields show.

    std::wstring logFolder, backupFolder;
    bool useBackup = false;
    /// With the six items of a new project until `Open` finds others. The choice may be one that the form has no button
    /// for; it is then saved as automatic.
    LogNaming naming = DefaultNaming();

    bool IsChoiceOpen() const { return !automaticOnly; }  ///< whether the user may choose the form of names
    bool AreItemsActive() const { return naming.choice == kLogNamingByItems; }
    /// A name as logs will have it, with example values and extension.
    std::wstring ExampleName() const;

    /// A user's text as it may stand in a file name: with one forbidden character in it, all of them and all dots go.
    /// `caret` moves back by the characters that go before it.
    static std::wstring FilterUserText(std::wstring_view text, std::size_t& caret);

private:
    static LogNaming DefaultNaming();
    ProtectedFileObject& project;
    bool automaticOnly = false;
};

}  // namespace orv
