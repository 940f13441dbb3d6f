#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/FileObject.h"

namespace orv {

class FileDependencies;

/// How a project runs one application: the computers that take part, the presentations they show, the vessels in use
/// and where they come from. NAME[DEFINITION].acf in the project's data folder;
/// docs/formats/application-configuration.md.
///
/// Remotes and presentations are numbered from 1 without gaps, vessels as they come. Getters read each item by itself
/// and leave what they don't find; setters change memory, the caller saves. One thread at a time.
class ORV_EXPORT AppConfig : public FileObject {
public:
    // Vessels.

    bool GetVesselConfig(unsigned id, std::wstring& name) const;  ///< name of the vessel file, without extension
    bool SetVesselConfig(unsigned id, const std::wstring& name);
    bool GetVesselEnable(unsigned id, bool& enable) const;
    bool SetVesselEnable(unsigned id, bool enable);
    /// A vessel that another computer holds. `rate` as the remote side understands it.
    bool SetRemoteVessel(unsigned id, unsigned remoteId, const std::wstring& host, unsigned port, bool rateEnabled,
                         double rate, const std::wstring& config);
    bool GetRemoteVesselId(unsigned id, unsigned& remoteId) const;
    bool GetRemoteVesselHost(unsigned id, std::wstring& host, unsigned& port) const;
    bool GetRemoteUpdateRate(unsigned id, bool& enabled, double& rate) const;
    bool GetRemoteConfig(unsigned id, std::wstring& config) const;
    void ScanForVessels();  ///< lists the ids that the file holds now
    /// Scans, and gives the smallest id above 0. False, and `id` is left alone, if there is none.
    bool GetFirstVesselId(unsigned& id);
    /// The smallest id above the given one, as of the last scan.
    bool GetNextVesselId(unsigned& id) const;
    void RemoveAllVessels();

    // Computers. A profile is the user's interface profile; it always comes back with what it is for in brackets.

    /// `profile` is always "Default[Master]", also on failure. True if name and port are there.
    bool GetMaster(std::wstring& name, unsigned& port, std::wstring& profile) const;
    bool SetMaster(const std::wstring& name, unsigned port, const std::wstring& profile);
    /// False only if there is no such computer: an item that is missing leaves its output alone.
    bool GetRemote(int no, std::wstring& name, unsigned& port) const;
    bool SetRemote(int no, const std::wstring& name, unsigned port);
    /// The layout is that of `user`, else the common one. `user` loses its "=", "[" and "]", which no key can hold. The
    /// profile gets "[AcqComp]" behind it, also on failure.
    bool GetACServer(std::wstring& name, unsigned& port, std::wstring& layout, std::wstring& profile,
                     std::wstring& user) const;
    bool SetACServer(const std::wstring& name, unsigned port, const std::wstring& layout, const std::wstring& profile,
                     std::wstring& user);
    /// As GetACServer, with "[Presentation]". A presentation on a remote computer bears the remote's section as its
    /// name, "Remote(2)".
    bool GetPresentation(int no, std::wstring& name, std::wstring& layout, std::wstring& profile, std::wstring& user,
                         bool& enable) const;
    bool SetPresentation(int no, const std::wstring& name, const std::wstring& layout, const std::wstring& profile,
                         std::wstring& user, bool enable);
    bool RemovePresentation(int no);
    /// How far sections numbered from 1 go on without a gap, -1 if there is none; `format` such as "Remote(%d)".
    int GetNumEntries(const std::wstring& format) const;
    /// By name, ignoring case. False: `no` is the number for a new one.
    bool FindRemote(const std::wstring& name, int& no) const;
    /// The next presentation behind `no` that stands on a remote; to walk them all, start from 0. False: `no` stays.
    bool FindPresentation(int remoteNo, int& no) const;

    // Colours.

    bool GetUseProjectColorTables() const;
    /// Name of the colour table of a kind; 0 is depth, "Default" unless it is set. Other kinds have none: empty.
    std::wstring GetColorTable(int kind) const;

    /// Adds the vessel files of a configuration, and the set-up that goes with each.
    static void GetDependencies(const std::wstring& path, FileDependencies& dependencies);

private:
    void ReadStation(std::wstring_view section, std::wstring& layout, std::wstring& profile, std::wstring& user) const;

    std::vector<unsigned> vesselIds;  // ascending
};

}  // namespace orv
