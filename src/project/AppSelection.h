#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

/// The decisions behind the pages that choose what a project runs. No toolkit: a page shows the lists, sets what the
/// user chose, and asks. Main thread.
namespace orv {

class FileObject;
class ProjectDefinition;

/// An application definition as a user chooses it.
struct AppDefChoice {
    std::wstring title;  ///< of its file
    std::wstring description;
};

/// The description that a definition gives of itself, or its title. `translated`: a text in the user's language that
/// the definition names comes first.
ORV_EXPORT std::wstring AppDefDescription(const FileObject& appDef, const std::wstring& title, bool translated);
/// All definitions that the data search would find, by title. Opening one signs it again if its signature doesn't
/// match.
ORV_EXPORT std::vector<AppDefChoice> ListAppDefs(bool translated);
/// Names of the files of a type that belong to a definition, "NAME[DEFINITION]" shown as NAME.
ORV_EXPORT std::vector<std::wstring> ConfigsOfDefinition(unsigned fileType, const std::wstring& definition);
/// `current` if it is on offer, else the first; empty if there is none.
ORV_EXPORT std::wstring Preselected(const std::vector<std::wstring>& offered, const std::wstring& current);

/// Choice of definition and configuration of a given project.
class ORV_EXPORT CAppDefDlg {
public:
    explicit CAppDefDlg(ProjectDefinition& forProject);

    const std::vector<AppDefChoice>& GetDefinitions() const { return definitions; }
    /// The configurations on offer for a definition, and which of them is chosen at first.
    std::vector<std::wstring> GetConfigurations(const std::wstring& title, std::wstring& chosen) const;
    /// Puts the first definition of that description and the configuration into the project, which isn't saved. False,
    /// and nothing is written, if there is none.
    bool OnOK(const std::wstring& description, const std::wstring& configuration);

private:
    ProjectDefinition& project;
    std::vector<AppDefChoice> definitions;
};

/// The wizard's page on which the current project gets its definition. Leaving it makes the definition the one in
/// force.
class ORV_EXPORT CAppDefSelectDlg {
public:
    CAppDefSelectDlg();

    const std::vector<AppDefChoice>& GetDefinitions() const { return definitions; }
    /// By its place in the list; -1 for none.
    void Select(int index) { selected = index; }
    /// Saves the choice in the project and the settings as they are, and initialises the data search anew with it.
    /// False: the wizard stays on the page, and nothing that failed is hidden: the search status or the `LastResult` of
    /// project or settings tells why.
    bool OnNext();

private:
    std::vector<AppDefChoice> definitions;
    int selected = -1;
};

/// A page that offers the files of the current project's definition, or to make a new one.
class ORV_EXPORT ConfigSelPage {
public:
    const std::vector<std::wstring>& GetNames() const { return names; }
    void SetCreateNew(bool create) { createNew = create; }
    bool IsListEnabled() const { return !createNew; }
    void Select(const std::wstring& name) { chosen = name; }
    void GetData(bool& create, std::wstring& name) const;

protected:
    ConfigSelPage(unsigned fileType, const std::wstring& current);

private:
    std::vector<std::wstring> names;
    std::wstring chosen;
    bool createNew = false;
};

/// Of application configurations.
class ORV_EXPORT CAppCfgSelPage : public ConfigSelPage {
public:
    CAppCfgSelPage();
};

/// Of vessel files.
class ORV_EXPORT CVslCfgSelPage : public ConfigSelPage {
public:
    CVslCfgSelPage();
};

}  // namespace orv
