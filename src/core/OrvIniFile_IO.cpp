#include "core/OrvIniFile_IO.h"

#include <cstdio>

#include "core/ConfigKeys.h"
#include "platform/text/Utf.h"

namespace orv {

OrvIniFile_IO::OrvIniFile_IO() {
    SetKeepOpen(true);
}

bool OrvIniFile_IO::Initialise(const std::wstring& folder) {
    return Open(folder + std::wstring(ORV_DEF_FILENAME));
}

bool OrvIniFile_IO::Initialise(const OrvIniFile_IO& other) {
    return Open(other.GetFileName());
}

bool OrvIniFile_IO::Open(const std::wstring& path) {
    if (initialised && GetFileName() == path) return true;
    initialised = FileOpen(path, false, kOpenRead);
    if (!initialised) {
        // On the standard output since its first version: installers look for this line there.
        const std::string line = "FileOpen with ORV.ini failed: " + ToUtf8(path) + "\n";
        std::fputs(line.c_str(), stdout);
    }
    return initialised;
}

template <class T>
bool OrvIniFile_IO::Read(std::wstring_view section, std::wstring_view key, T& out) const {
    return initialised && GetItem(section, key, out);
}

bool OrvIniFile_IO::ReadOrTrue(std::wstring_view section, std::wstring_view key, bool& out) const {
    if (initialised) out = true;
    return Read(section, key, out);
}

template <class T>
bool OrvIniFile_IO::Change(std::wstring_view section, std::wstring_view key, const T& value) {
    if (!SetItem(section, key, value, true)) return false;
    CreateCheckSum();
    return true;
}

namespace {
constexpr std::wstring_view StartSection(bool lite) {
    return lite ? LITEVIEW_SECTION : STARTUP_SECTION;
}
}  // namespace

bool OrvIniFile_IO::GetCurrentProjectName(std::wstring& out) const {
    return Read(DATA_PATH_SECTION, pathKeys[kLocationProject], out);
}

bool OrvIniFile_IO::SetCurrentProjectName(const std::wstring& name) {
    return Change(DATA_PATH_SECTION, pathKeys[kLocationProject], name);
}

bool OrvIniFile_IO::GetProjectPath(std::wstring& out) const {
    return Read(DATA_PATH_SECTION, pathKeys[kLocationProjects], out);
}

bool OrvIniFile_IO::SetProjectPath(const std::wstring& path) {
    return Change(DATA_PATH_SECTION, pathKeys[kLocationProjects], path);
}

bool OrvIniFile_IO::SetUserGeneralPath(const std::wstring& path) {
    return Change(DATA_PATH_SECTION, pathKeys[kLocationUserGeneral], path);
}

bool OrvIniFile_IO::GetCommonProjectFilesPath(std::wstring& out) const {
    return Read(DATA_PATH_SECTION, pathKeys[kLocationCommon], out);
}

bool OrvIniFile_IO::SetCommonProjectFilesPath(const std::wstring& path) {
    return Change(DATA_PATH_SECTION, pathKeys[kLocationCommon], path);
}

bool OrvIniFile_IO::GetUseDefaultCommonPath(bool& out) const {
    return ReadOrTrue(DATA_PATH_SECTION, USE_DEFAULT_COMMON_PATH, out);
}

bool OrvIniFile_IO::SetUseDefaultCommonPath(bool use) {
    return Change(DATA_PATH_SECTION, USE_DEFAULT_COMMON_PATH, use);
}

bool OrvIniFile_IO::GetUserProfileName(std::wstring& out) const {
    return Read(USER_PROFILE_SECTION, USER_PROFILE_SECTION, out);
}

bool OrvIniFile_IO::GetLanguage(std::wstring& out) const {
    return Read(LANGUAGE_SECTION, LANGUAGE_SECTION, out);
}

bool OrvIniFile_IO::GetUserLanguage(std::wstring& out) const {
    return Read(LANGUAGE_SECTION, USER_LANGUAGE, out);
}

bool OrvIniFile_IO::SetUserLanguage(const std::wstring& language) {
    return Change(LANGUAGE_SECTION, USER_LANGUAGE, language);
}

bool OrvIniFile_IO::GetPMCheck(bool& out, bool lite) const {
    return ReadOrTrue(StartSection(lite), PM_CHECK, out);
}

bool OrvIniFile_IO::SetPMCheck(bool value, bool lite) {
    return Change(StartSection(lite), PM_CHECK, value);
}

bool OrvIniFile_IO::GetOpenGLCheck(bool& out, bool lite) const {
    return ReadOrTrue(StartSection(lite), OPENGL_CHECK, out);
}

bool OrvIniFile_IO::SetOpenGLCheck(bool value, bool lite) {
    return Change(StartSection(lite), OPENGL_CHECK, value);
}

bool OrvIniFile_IO::GetAdvancedCheck(bool& out) const {
    return Read(EXPLORER_VIEW_SECTION, ADVANCED_CHECK, out);
}

bool OrvIniFile_IO::SetAdvancedCheck(bool value) {
    return Change(EXPLORER_VIEW_SECTION, ADVANCED_CHECK, value);
}

bool OrvIniFile_IO::GetAdvancedVesselCfgCheck(bool& out) const {
    return Read(EXPLORER_VIEW_SECTION, ADVANCED_VESSEL_CFG_CHECK, out);
}

bool OrvIniFile_IO::SetAdvancedVesselCfgCheck(bool value) {
    return Change(EXPLORER_VIEW_SECTION, ADVANCED_VESSEL_CFG_CHECK, value);
}

bool OrvIniFile_IO::GetShowToolTip(bool& out) const {
    return Read(EXPLORER_VIEW_SECTION, SHOW_TOOL_TIP, out);
}

bool OrvIniFile_IO::SetShowToolTip(bool value) {
    return Change(EXPLORER_VIEW_SECTION, SHOW_TOOL_TIP, value);
}

bool OrvIniFile_IO::GetStaticGlobe(bool& out) const {
    return Read(EXPLORER_VIEW_SECTION, STATIC_GLOBE, out);
}

bool OrvIniFile_IO::SetStaticGlobe(bool value) {
    return Change(EXPLORER_VIEW_SECTION, STATIC_GLOBE, value);
}

bool OrvIniFile_IO::GetAutoHideBottomPane(bool& out) const {
    return Read(EXPLORER_VIEW_SECTION, AUTO_HIDE_BOTTOM_PANE, out);
}

bool OrvIniFile_IO::SetAutoHideBottomPane(bool value) {
    return Change(EXPLORER_VIEW_SECTION, AUTO_HIDE_BOTTOM_PANE, value);
}

bool OrvIniFile_IO::GetMolbyActiveProjectId(std::wstring& out) const {
    return Read(MOLBY_SECTION, pathKeys[kLocationActiveProjectId], out);
}

bool OrvIniFile_IO::SetMolbyActiveProjectId(const std::wstring& id) {
    return Change(MOLBY_SECTION, pathKeys[kLocationActiveProjectId], id);
}

}  // namespace orv
