#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/FileObject.h"
#include "platform/Export.h"
#include "platform/values/COrvDouble3D.h"

namespace orv {

class CCompOffset;
class CDataId;
class FileDependencies;
class ShapeSelection;
struct VesselPairing;

// Live guidance state, which the applications keep in vessel files.
inline constexpr std::wstring_view SECTION_ACTIVE_WAYPOINT = L"ACTIVE_WAYPOINT";
inline constexpr std::wstring_view SECTION_ACTIVE_PLACEMENTPOINT = L"ACTIVE_PLACEMENTPOINT";
inline constexpr std::wstring_view SECTION_ACTIVE_WAYLINE = L"ACTIVE_WAYLINE";
inline constexpr std::wstring_view WAYLINE_START_X = L"START_X";
inline constexpr std::wstring_view WAYLINE_START_Y = L"START_Y";
inline constexpr std::wstring_view ACTIVE_WORKAREAS = L"ACTIVE_WORKAREAS";
// Models that are updated during logging.
inline constexpr std::wstring_view PRODUCTION_UPDATEDTM = L"ProductionUpdateDtm";
inline constexpr std::wstring_view BSCATTER_UPDATEDTM = L"BscatterUpdateDtm";
inline constexpr std::wstring_view HEAVYOIL_UPDATEDTM = L"HeavyOilUpdateDtm";

/// Modes of `VesselConfig::FindOffsetUsage`.
enum OffsetSearch : int { kSearchFirst = 2, kSearchNext = 4 };

/// One vessel file: what a vessel carries and does in a project. Geometry and offset points, guidance, logging, and
/// the numbered sections of devices, computations and data sources. See docs/formats/vessel.md.
///
/// Every getter and setter is an access to one item of the file: nothing is cached. A getter returns false and leaves
/// its output alone when the item is missing or doesn't convert, so the caller's first value is the default. A setter
/// makes what is missing, changes memory only and is false when the item can't be written. Lengths are metres.
///
/// The caller owns it. One thread at a time.
class ORV_EXPORT VesselConfig : public FileObject {
public:
    // Virtual operations, in their slot order.

    ~VesselConfig() override = default;
    /// Lays a difference file over this one: sections "add.NAME", "change.NAME" and "remove.NAME". False, and
    /// nothing changes, if the files have different names; false half-way when an item can't be written.
    bool ApplyDifference(const FileObject& difference) override;
    /// Called at the end of `OverLoadCommonConfig`, for sections of its own that a kind of vessel takes over.
    virtual bool OverLoadAdditionalSections(const VesselConfig& other);

    VesselConfig() = default;
    VesselConfig(const VesselConfig&) = default;
    VesselConfig& operator=(const VesselConfig&) = default;
    VesselConfig(VesselConfig&&) = default;
    VesselConfig& operator=(VesselConfig&&) = default;

    // ---- The vessel itself: VesselConfig.cpp

    /// The file's title ahead of its first "[".
    std::wstring GetVesselName() const;
    bool GetTrackingOffset(CCompOffset& out) const;

    bool GetSealevel(double& out) const;
    bool SetSealevel(double value);
    bool GetVesselDraft(double& out) const;
    bool SetVesselDraft(double value);
    bool IsVesselDraftValid(bool& out) const;
    bool GetVesselTurnRadius(double& out) const;
    bool SetVesselTurnRadius(double value);
    bool GetVesselLength(double& out) const;
    bool SetVesselLength(double value);
    bool GetVesselWidth(double& out) const;
    bool SetVesselWidth(double value);
    bool GetVesselHeight(double& out) const;
    bool SetVesselHeight(double value);
    bool GetSubsurfaceVessel(bool& out) const;
    bool SetSubsurfaceVessel(bool value);
    bool GetVesselShape(ShapeSelection& out) const;
    bool SetVesselShape(const ShapeSelection& shape);  ///< false for a shape that can't be written as a text
    /// Without the item: false, and unlike all other getters `out` is cleared. A part that is missing is 0.
    bool GetCenterOfGravityOffset(COrvDouble3D& out) const;
    bool SetCenterOfGravityOffset(const COrvDouble3D& value);
    /// The file of the contour. True with `out` left alone for a vessel that has a standard shape.
    bool GetVesselContour(std::wstring& out) const;
    bool SetVesselContour(const std::wstring& name);

    // Guidance

    bool GetVesselRoute(std::wstring& out) const;
    bool SetVesselRoute(const std::wstring& name);
    bool GetVesselRunlines(std::wstring& out) const;
    bool SetVesselRunlines(const std::wstring& name);
    bool GetVesselWaypoints(std::wstring& out) const;
    bool SetVesselWaypoints(const std::wstring& name);
    bool GetRestrictedAreas(std::wstring& out) const;
    bool SetRestrictedAreas(const std::wstring& name);
    bool GetVesselPlacement(std::wstring& out) const;
    bool SetVesselPlacement(const std::wstring& name);
    bool GetVesselDredgeInstruction(std::wstring& out) const;
    bool SetVesselDredgeInstruction(const std::wstring& name);
    bool GetWorkAreas(std::wstring& out) const;
    bool SetWorkareas(const std::wstring& name);
    bool GetObjectPlacements(std::wstring& out) const;
    bool SetObjectPlacements(const std::wstring& name);
    bool GetActiveRunline(std::wstring& out) const;
    void SetActiveRunline(const std::wstring& name);
    /// `type` is a file type id; one that isn't known is all ones. True only with both items.
    bool GetDesignModel(unsigned& type, std::wstring& name) const;
    bool SetDesignModel(unsigned type, const std::wstring& name);
    // A value with its switch. The getter is true only with both; the setter leaves the switch when the value fails.
    bool GetDesignModelOffset(double& value, bool& enabled) const;
    bool SetDesignModelOffset(double value, bool enabled);
    bool GetDesignModelZShift(double& value, bool& enabled) const;
    bool SetDesignModelZShift(double value, bool enabled);
    bool GetDesignModelMaxZ(double& value, bool& enabled) const;
    bool SetDesignModelMaxZ(double value, bool enabled);
    bool GetDesignModelUnderDredgeTol(double& out) const;
    bool SetDesignModelUnderDredgeTol(double value);
    bool GetDesignModelOverDredgeTol(double& out) const;
    bool SetDesignModelOverDredgeTol(double value);
    bool GetRLRetrieval(int& out) const;
    bool SetRLRetrieval(int mode);
    void GetShowLeadInLines(bool& out) const;
    void SetShowLeadInLines(bool value);
    void GetUseLeadInLines(bool& out) const;
    void SetUseLeadInLines(bool value);
    void GetLeadInLength(double& out) const;
    void SetLeadInLength(double value);
    bool GetAutoNextLineMode(bool& out) const;
    bool SetAutoNextLineMode(bool value);
    bool GetSkipNLines(int& out) const;
    bool SetSkipNLines(int lines);
    bool GetUseOfftrackCondition(bool& out) const;
    bool SetUseOfftrackCondition(bool value);
    bool GetOfftrackLimit(double& out) const;
    bool SetOfftrackLimit(double value);
    bool GetVesselAlarms(std::wstring& out) const;
    bool SetVesselAlarms(const std::wstring& name);

    // Logging

    /// With a model for each survey its name is made of today's local date, whatever is stored.
    bool GetUpdateDtm(std::wstring& out) const;
    bool SetUpdateDtm(const std::wstring& name);
    bool GetBscatUpdateDtm(std::wstring& out) const;  ///< likewise
    bool SetBscatUpdateDtm(const std::wstring& name);
    bool GetProdUpdateDtm(std::wstring& out) const;
    bool SetProdUpdateDtm(const std::wstring& name);
    bool GetHeavyOilUpdateDtm(std::wstring& out) const;
    bool SetHeavyOilUpdateDtm(const std::wstring& name);
    bool GetUpdateDxf(std::wstring& out) const;
    bool SetUpdateDxf(const std::wstring& name);
    bool GetUpdateRlncov(std::wstring& out) const;
    bool SetUpdateRlncov(const std::wstring& name);
    bool GetMaxSizePerFile(int& out) const;
    void SetMaxSizePerFile(int size);
    bool IsMaxSizePerFileEnabled(bool& out) const;
    void EnableMaxSizePerFile(bool value);
    bool GetMaxLogtimePerFile(int& out) const;
    void SetMaxLogtimePerFile(int time);
    bool IsMaxLogtimePerFileEnabled(bool& out) const;
    void EnableMaxLogtimePerFile(bool value);

    /// Adds the contour and the alarm map of the vessel file `path`; one that doesn't open adds nothing.
    static void GetDependencies(const std::wstring& path, FileDependencies& dependencies);

    // ---- Ids: VesselIds.cpp

    /// Makes every reference to data of a vessel one to vessel `id`, as a file needs that was copied from another
    /// vessel. Fixed references stay, and so do those to groups 20 and 1007, which belong to no vessel. An item that
    /// doesn't read as what it should be stays as it is. True.
    bool SetVesselID(unsigned id);
    /// The vessel of the first reference; false if there is none.
    bool GetVesselID(unsigned& out) const;

    // ---- Devices, computations, offsets, data sources: VesselDevices.cpp. Numbers start at 1.

    unsigned GetNumDevices() const;  ///< of all sections with the word in their name, whatever their number
    unsigned GetNumComputations() const;
    unsigned GetNumDataSources() const;
    unsigned GetNumOffsets() const;  ///< up to the first gap
    bool HaveDevice(unsigned no) const;
    bool HaveComps(unsigned no) const;
    unsigned GetFirstFreeDeviceNumber() const;

    /// `section` is set in any case, and what has a default is set to it. True if driver, group and port are there;
    /// a port of the old form becomes "COM" or "NET" and its number.
    bool GetDeviceAttribs(unsigned no, std::wstring& driver, unsigned& group, std::wstring& port, std::wstring& section,
                          int& subSystem, std::wstring& allOptionsGuid, unsigned& portGroup, std::wstring& deviceGuid,
                          std::wstring& copiedGuid) const;
    bool GetDeviceCompositeAttribs(unsigned no, std::wstring& allOptionsGuid, unsigned& portGroup) const;
    bool SetDeviceAttribs(unsigned no, const std::wstring& driver, unsigned group, const std::wstring& port);
    bool SetDevicePortAttribs(unsigned no, const std::wstring& port);
    bool SetDeviceEnable(unsigned no, int value);
    /// The name that users see. A device without one gets the alias of `id`, which is kept in the file, even if it is
    /// empty; without that its group, number and driver make a name.
    std::wstring GetDeviceName(unsigned no, const CDataId& id);
    bool RemoveDevice(unsigned no);  ///< leaves a gap
    bool RemoveAllDevices();

    bool DeviceHasOutputs(unsigned no) const;
    bool DeviceHasItemIds(unsigned no) const;
    // Empty if device or item is missing; the setters do nothing without the device.
    std::wstring GetDataOutItem(unsigned no, int output, int item) const;
    void SetDataOutItem(unsigned no, int output, int item, const std::wstring& value);
    std::wstring GetItemId(unsigned no, int i, int j, int k) const;
    void SetItemId(unsigned no, int i, int j, int k, const std::wstring& value);
    std::wstring GetTriggerDataItem(unsigned no, int item) const;
    void SetTriggerDataItem(unsigned no, int item, const std::wstring& value);

    bool GetComputation(unsigned no, std::wstring& name, unsigned& group, std::wstring& section) const;
    bool SetComputation(unsigned no, const std::wstring& name, unsigned group);
    bool RemoveAllComputations();
    bool RemoveCompAndRename(unsigned no);  ///< those behind it move up
    bool RemoveCompByGroupIdAndRename(unsigned group);

    bool GetOffset(unsigned no, std::wstring& name, double& x, double& y, double& z) const;
    bool SetOffset(unsigned no, const std::wstring& name, double x, double y, double z);
    bool RemoveOffset(unsigned no);
    bool RemoveAllOffsets();  ///< up to the first gap; false if there is none
    /// The next attribute of a device that refers to the offset `name`: `kSearchFirst` starts, `kSearchNext` goes on.
    /// Ends at a gap in the devices. One search at a time.
    bool FindOffsetUsage(const std::wstring& name, int mode, unsigned& device, std::wstring& key, std::wstring& value);

    bool GetAutoSwitch(unsigned short source) const;
    bool SetAutoSwitch(unsigned short source, bool value);
    /// Appends the conditions that are there to `list`, which isn't cleared.
    bool GetDataConditions(unsigned short source, unsigned short group, unsigned short item,
                           std::vector<std::wstring>& list) const;
    bool SetDataConditions(unsigned short source, unsigned short group, unsigned short item,
                           const std::vector<std::wstring>& list);
    bool GetDataConditionsOrder(unsigned short source, std::wstring& out) const;
    bool SetDataConditionsOrder(unsigned short source, const std::wstring& order);

    /// Renumbers the devices by sub-system, group and number, so that two vessels can be compared section by section.
    /// False if they are in order already. Close gaps first.
    bool OrderDevices();
    /// Closes the gaps in the numbers of the devices, in their order, and saves nothing. A device numbered 100 or more
    /// above the number of devices stays where it is; it is counted all the same.
    unsigned CloseDeviceGaps() { return CountAndMakeContigiousDevices(); }

    // ---- Exchange with other computers: VesselExchange.cpp

    /// Pushes what this file shares into the common file at `path`, which is made if it is missing. This file gets the
    /// identifiers it lacks; the caller saves it.
    [[nodiscard]] bool SaveCommonConfig(const std::wstring& path);
    /// Pulls what is shared out of the common file. On false this file may be changed in part: don't save it.
    [[nodiscard]] bool OverLoadCommonConfig(const std::wstring& path);

protected:
    /// Makes `destination` what `source` of the other file is, but for the local attributes that it has.
    bool CopySectionUsingFlags(const std::wstring& destination, const VesselConfig& other, const std::wstring& source);

private:
    // Steps of the exchange, in their order.
    void SaveDevicesForSameGuid(VesselPairing& pairing) const;
    bool SaveDevicesForSameAttribs(VesselPairing& pairing);
    void CountGroupsInVesselConfig(unsigned count, std::map<unsigned, int>& counts) const;
    void RemoveDevicesForSameAttribs(VesselConfig& common, unsigned commonCount, unsigned count,
                                     std::map<unsigned, int> counts) const;
    void OverLoadDevicesForSameGuid(VesselPairing& pairing);
    void OverLoadDevicesForSameAttribs(VesselPairing& pairing);
    bool AddMissingCommonDevices(VesselPairing& pairing, bool wasEmpty);

    unsigned FindNumSections(std::wstring_view word) const;
    unsigned CountAndMakeContigiousDevices();
    bool RemoveComputation(unsigned no);
    bool RemoveAllSections(std::wstring_view word);
    bool UpdateModelName(std::wstring_view key, std::wstring_view ending, std::wstring& out) const;

    // Where `FindOffsetUsage` stands.
    unsigned searchDevice = 0;
    FobjSection searchItem;
};

/// "DEVICE(3)" and its like.
ORV_EXPORT std::wstring NumberedSection(std::wstring_view word, unsigned no);
/// The number in such a name: all of it, decimal, without a sign; none for any other name.
ORV_EXPORT bool ParseNumberedSection(std::wstring_view name, std::wstring_view word, unsigned& no);

inline constexpr std::wstring_view kDeviceWord = L"DEVICE", kComputationWord = L"COMPUTATION",
                                   kDataSourceWord = L"DATASOURCE";

}  // namespace orv
