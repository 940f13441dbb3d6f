#pragma once

#include <string>
#include <vector>

#include "core/MergeSave.h"
#include "project/VesselConfig.h"

namespace orv::cfg {

class Document;
class Session;

/// Where a vessel of the open project is kept: its name, with or without the application definition in brackets.
bool VesselPath(const Session& session, const std::wstring& name, std::wstring& path);
/// Opens a vessel file: by its path, else by the name of a vessel in the project. False after a problem has been told.
bool OpenVessel(Session& session, const std::string& which, VesselConfig& vessel);
bool SaveVessel(Session& session, VesselConfig& vessel);
/// The same for single changes, which are laid over what hosts have saved since `merge` was made of the vessel as read.
bool SaveVessel(Session& session, VesselConfig& vessel, MergeSave& merge);

/// One device as tools show it.
struct VesselDevice {
    unsigned no = 0, group = 0;
    std::wstring name, driver, port, section;
    int subSystem = 0;
    int numberInGroup = 0;  ///< from 1, as references count
    bool enabled = true, complete = false;
};
/// All of the sections, whatever their numbers, in the order of these. Doesn't change the file.
std::vector<VesselDevice> DevicesOf(const VesselConfig& vessel);
/// Numbers of the sections `word(n)`, ascending.
std::vector<unsigned> NumbersOf(const VesselConfig& vessel, std::wstring_view word);
/// Closes the gaps in the numbers of the devices and orders them, in memory. False after a problem has been told: what
/// stands among the devices without being one, or out of reach, counts as one, and ordering would leave holes for it.
bool OrderDevicesOf(Session& session, VesselConfig& vessel);

/// All that a vessel has, as "vessel show" and the demonstration print it.
void ReportVessel(Session& session, Document& document, VesselConfig& vessel);

/// Reads the data definition of the installation if it can be found; its name of a group, empty if there is none.
bool HaveDataDefinition(Session& session);
std::wstring GroupName(Session& session, unsigned group);

}  // namespace orv::cfg
