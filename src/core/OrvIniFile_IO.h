#pragma once

#include <string>
#include <string_view>

#include "core/ProtectedFileObject.h"

namespace orv {

/// The machine-wide settings file ORV.ini: the current project, the folders of the data tree, start-up and display
/// choices. Setters change memory and sign; the caller saves. Main thread.
///
/// Getters return false, and leave their output alone, before a successful `Initialise` and for a missing item; where
/// a default is told it is written first.
class ORV_EXPORT OrvIniFile_IO : public ProtectedFileObject {
public:
    OrvIniFile_IO();

    /// Opens `folder` + "ORV.ini", joined as they stand; a file that doesn't verify is signed again. Called again for
    /// the same path it doesn't read again, so that unsaved changes stay.
    bool Initialise(const std::wstring& folder);
    bool IsInit() const { return initialised; }

    bool GetCurrentProjectName(std::wstring& out) const;
    bool SetCurrentProjectName(const std::wstring& name);
    bool GetProjectPath(std::wstring& out) const;
    bool SetProjectPath(const std::wstring& path);
    bool SetUserGeneralPath(const std::wstring& path);
    bool GetCommonProjectFilesPath(std::wstring& out) const;
    bool SetCommonProjectFilesPath(const std::wstring& path);
    bool GetUseDefaultCommonPath(bool& out) const;  ///< default true
    bool SetUseDefaultCommonPath(bool use);
    bool GetUserProfileName(std::wstring& out) const;
    bool GetLanguage(std::wstring& out) const;
    bool GetUserLanguage(std::wstring& out) const;
    bool SetUserLanguage(const std::wstring& language);
    bool GetPMCheck(bool& out, bool lite) const;  ///< default true
    bool SetPMCheck(bool value, bool lite);
    bool GetOpenGLCheck(bool& out, bool lite) const;  ///< default true
    bool SetOpenGLCheck(bool value, bool lite);
    bool GetAdvancedCheck(bool& out) const;
    bool SetAdvancedCheck(bool value);
    bool GetAdvancedVesselCfgCheck(bool& out) const;
    bool SetAdvancedVesselCfgCheck(bool value);
    bool GetShowToolTip(bool& out) const;
    bool SetShowToolTip(bool value);
    bool GetStaticGlobe(bool& out) const;
    bool SetStaticGlobe(bool value);
    bool GetAutoHideBottomPane(bool& out) const;
    bool SetAutoHideBottomPane(bool value);
    bool GetMolbyActiveProjectId(std::wstring& out) const;
    bool SetMolbyActiveProjectId(const std::wstring& id);

private:
    bool Initialise(const OrvIniFile_IO& other);
    bool Open(const std::wstring& path);
    template <class T>
    bool Read(std::wstring_view section, std::wstring_view key, T& out) const;
    bool ReadOrTrue(std::wstring_view section, std::wstring_view key, bool& out) const;
    template <class T>
    bool Change(std::wstring_view section, std::wstring_view key, const T& value);
    bool initialised = false;
};

}  // namespace orv
