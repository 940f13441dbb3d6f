#include "project/AppSelection.h"

#include <algorithm>
#include <map>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/notify/Notices.h"
#include "platform/service/Translator.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr std::wstring_view kDescriptionId =
    L"IDS_AppDef_Description";  // item of a definition: id of a translated text

/// What the current project runs; empty without one.
std::wstring CurrentDefinition() {
    std::wstring definition;
    DataSearch::GetDataSearch().GetProjectDefinition().GetAppDefinition(definition);
    return definition;
}

std::wstring CurrentConfiguration() {
    std::wstring configuration;
    DataSearch::GetDataSearch().GetProjectDefinition().GetAppConfiguration(configuration);
    return configuration;
}

}  // namespace

std::wstring AppDefDescription(const FileObject& appDef, const std::wstring& title, bool translated) {
    std::wstring id, text;
    if (translated && appDef.GetItem(APPLICATION_SECTION, kDescriptionId, id)) {
        text = Translator::Instance().GetResourceString(id);
    }
    if (text.empty()) appDef.GetItem(APPLICATION_SECTION, appParamKeys[kAppDefinitionDescription], text);
    return text.empty() ? title : text;
}

std::vector<AppDefChoice> ListAppDefs(bool translated) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, fallBack, extension;
    if (!search.GetFilePath(kFileTypeAppDef, folder) || !search.GetFileExtension(kFileTypeAppDef, extension)) return {};
    std::map<std::wstring, std::wstring> folders;  // by title
    const auto add = [&](const std::wstring& from) {
        std::vector<std::wstring> titles;
        search.GetFileNames(kFileTypeAppDef, titles, from);
        for (const std::wstring& title : titles) folders.try_emplace(title, from);
    };
    add(folder);
    // Where the start looks when the first has none; it is where installations have them.
    if (search.GetDataPathInfo(kLocationAppDefs, fallBack)) add(fallBack);
    std::vector<AppDefChoice> choices;
    for (const auto& [title, from] : folders) {
        ProtectedFileObject file;
        file.FileOpen(from + title + extension, false, kOpenRead);
        choices.push_back({title, AppDefDescription(file, title, translated)});
    }
    return choices;
}

std::vector<std::wstring> ConfigsOfDefinition(unsigned fileType, const std::wstring& definition) {
    const std::wstring mark = L"[" + definition + L"]";
    std::vector<std::wstring> files, names;
    DataSearch::GetDataSearch().GetFileNames(fileType, files);
    for (const std::wstring& file : files) {
        if (const std::size_t at = file.find(mark); at != file.npos) names.push_back(file.substr(0, at));
    }
    return names;
}

std::wstring Preselected(const std::vector<std::wstring>& offered, const std::wstring& current) {
    if (offered.empty()) return {};
    return std::find(offered.begin(), offered.end(), current) == offered.end() ? offered.front() : current;
}

// ---- dialogue on a given project

CAppDefDlg::CAppDefDlg(ProjectDefinition& forProject) : project(forProject), definitions(ListAppDefs(false)) {}

std::vector<std::wstring> CAppDefDlg::GetConfigurations(const std::wstring& title, std::wstring& chosen) const {
    std::vector<std::wstring> offered = ConfigsOfDefinition(kFileTypeAppConfig, title);
    std::wstring current;
    project.GetAppConfiguration(current);
    chosen = Preselected(offered, current);
    return offered;
}

bool CAppDefDlg::OnOK(const std::wstring& description, const std::wstring& configuration) {
    const auto chosen = std::find_if(definitions.begin(), definitions.end(),
                                     [&](const AppDefChoice& choice) { return choice.description == description; });
    return chosen != definitions.end() && project.SetAppDefinition(chosen->title) &&
           project.SetAppDefDescription(description) && project.SetAppConfiguration(configuration);
}

// ---- wizard's page

CAppDefSelectDlg::CAppDefSelectDlg() : definitions(ListAppDefs(true)) {}

bool CAppDefSelectDlg::OnNext() {
    if (selected < 0 || selected >= static_cast<int>(definitions.size())) {
        Notify(Notice::Message, L"Please select an application type.");
        return false;
    }
    const AppDefChoice& choice = definitions[static_cast<std::size_t>(selected)];
    DataSearch& search = DataSearch::GetDataSearch();
    ProjectDefinition& project = search.GetProjectDefinition();
    if (!project.SetAppDefinition(choice.title) || !project.SetAppDefDescription(choice.description) ||
        !project.FileSave(L"", 0, kSave)) {
        return false;
    }
    // By its parts, as a full path is only had of a search that is initialised: an attempt that failed must not close
    // the page to the next.
    std::wstring extension, folder, name;
    return search.GetFileInfo(kFileTypeSystem, extension, folder, name) &&
           search.GetOrvIni().FileSave(folder + name + extension, 0, kSave) && search.ReInitialise(choice.title);
}

// ---- pages of configurations and vessels

ConfigSelPage::ConfigSelPage(unsigned fileType, const std::wstring& current)
    : names(ConfigsOfDefinition(fileType, CurrentDefinition())), chosen(Preselected(names, current)) {}

void ConfigSelPage::GetData(bool& create, std::wstring& name) const {
    create = createNew;
    name = chosen;
}

CAppCfgSelPage::CAppCfgSelPage() : ConfigSelPage(kFileTypeAppConfig, CurrentConfiguration()) {}
CVslCfgSelPage::CVslCfgSelPage() : ConfigSelPage(kFileTypeVesselConfig, {}) {}

}  // namespace orv
