#pragma once

#include <span>
#include <string>
#include <string_view>

#include "core/ProtectedFileObject.h"

namespace orv {

/// A program definition file: what a kind of installation may do. What it doesn't restrict is allowed. Main thread.
///
/// A getter returns false and leaves its outputs alone before a successful `Initialise`; after it the outputs get their
/// default first. False with status 2, 4 or 5 means that the file has no such row.
class ORV_EXPORT ProgramDefFile_IO : public ProtectedFileObject {
public:
    bool Initialise(const std::wstring& name, bool verifyFileName);
    bool IsInit() const { return initialised; }
    /// True if the last query failed for want of such a row only: there is no restriction. False after a file that
    /// couldn't be opened, which vouches for nothing.
    bool LastRowAbsent() const {
        const int status = GetErrorStatus();
        return status == kFileNoFile || status == kFileNoSection || status == kFileNoKey;
    }

    /// By key (matched ignoring case; an unknown one gives status 11 and all outputs false, even before `Initialise`)
    /// or by id (status 12). No row: all true, `location` -1, and true.
    bool GetFilePermissions(const std::wstring& key, bool& supported, bool& create, bool& select,
                            int* location = nullptr) const;
    bool GetFilePermissions(unsigned id, bool& supported, bool& create, bool& select, int* location = nullptr) const;
    bool GetFileSupportFlag(unsigned id, bool& out) const;
    bool GetFileCreateFlag(unsigned id, bool& out) const;
    bool GetFileSelectFlag(unsigned id, bool& out) const;
    bool GetViewMax(const std::wstring& key, int& out) const;
    bool GetViewMax(unsigned id, int& out) const;
    bool GetLayerMax(const std::wstring& name, int& out) const;
    bool GetMultiObjectFlag(bool& out) const;
    bool GetRelativeObjectFlag(bool& out) const;
    bool GetDynamicObjectFlag(bool& out) const;
    bool GetSimulationFlag(bool& out) const;
    bool GetDisableLoggingFlag(bool& out) const;
    bool GetMultiMax(int& out) const;
    bool GetRelativeMax(int& out) const;
    bool GetVesselPermissions(bool& multi, int& multiMax, bool& relative, int& relativeMax, bool& dynamic) const;
    bool GetDeviceMax(unsigned type, int& out) const;
    bool GetComputationMax(unsigned type, int& out) const;
    bool GetDatasourceMax(unsigned type, int& out) const;
    bool GetExecutableName(const std::wstring& key, std::wstring& out) const;
    bool GetExecutableName(unsigned id, std::wstring& out) const;
    bool GetExecutablePermission(const std::wstring& key, bool& out) const;
    bool GetExecutablePermission(unsigned id, bool& out) const;
    bool GetNetworkSupportFlag(bool& out) const;
    bool GetRemoteNumMax(int& out) const;
    bool GetPresentationsMax(int& out) const;
    bool GetNetworkPermissions(bool& support, int& remotes, int& presentations) const;
    bool GetCoordSysKey(std::wstring& out) const;
    bool GetLoggingPermission(int id, bool& out) const;
    bool GetExportPermission(int id, bool& out) const;
    bool GetGuidancePermission(int id, bool& out) const;
    bool GetToolPermission(const std::wstring& name, bool& out) const;
    bool GetUALSupportFlag(bool& out) const;

private:
    template <class T>
    bool Read(std::wstring_view section, std::wstring_view key, T& out) const;
    template <class T>
    bool ReadOr(const T& absent, std::wstring_view section, std::wstring_view key, T& out) const;
    bool Fail(int status) const;
    template <class T>
    bool ProgramItem(unsigned id, int item, T& out) const;
    bool FlagOf(std::wstring_view section, std::span<const std::wstring_view> keys, int id, bool& out) const;
    bool initialised = false;
};

}  // namespace orv
