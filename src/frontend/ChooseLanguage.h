#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// Finds the translations of an installation: the sub-folders of `localizations` in the application folder, each named
/// by its locale id in hexadecimal, and in each the file showas.txt, whose first line is what the language calls
/// itself. Main thread.
class ORV_EXPORT ChooseLanguageCore {
public:
    virtual ~ChooseLanguageCore() = default;
    /// Enters what it finds into the map; true if that is any.
    bool SearchForAvailableLanguages();
    std::map<int, std::wstring>& GetLanguageMap() { return languages; }
    const std::map<int, std::wstring>& GetLanguageMap() const { return languages; }

protected:
    struct Language {
        int id = 0;         ///< 0 for a folder that isn't named by a number
        std::wstring name;  ///< empty without a readable showas.txt
    };
    static bool GetAvailableLanguages(std::vector<Language>& list);
    static std::wstring GetLanguageNameFromShowAs(const std::wstring& folder);

private:
    std::map<int, std::wstring> languages;
};

/// What the language form does, without its window.
class ORV_EXPORT ChooseLanguageDialog {
public:
    bool Open() { return core.SearchForAvailableLanguages(); }  ///< false: nothing to choose from
    const std::map<int, std::wstring>& Choices() const { return core.GetLanguageMap(); }
    /// Stores the choice in the settings and saves them; false leaves the form open. It takes effect as the application
    /// decides.
    bool Ok(int id) const;

private:
    static bool ChangeLanguageSetting(const std::wstring& text);
    ChooseLanguageCore core;
};

/// A locale id as the settings hold it: hexadecimal, four wide, padded with blanks in front, not zeros. Readers allow
/// for the blank.
ORV_EXPORT std::wstring LanguageSettingText(int id);
/// First line of a showas.txt: UTF-8, or Latin-1 where it isn't that and `onlyUtf8` doesn't rule it out.
ORV_EXPORT std::wstring ReadShowAs(std::string_view bytes, bool onlyUtf8);

}  // namespace orv
