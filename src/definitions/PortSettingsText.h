#pragma once

#include <string>

#include "core/FileSection.h"
#include "platform/Export.h"

/// One line on a port, as lists of ports show it, from its section. Any thread may call.
namespace orv {

ORV_EXPORT std::wstring SerialSettingsText(const FileSection& port);   ///< "4800 8-NO-1"
ORV_EXPORT std::wstring NetworkSettingsText(const FileSection& port);  ///< "UDP 4040 10.0.0.7:5000"
/// Handler and address, of cameras and sonars.
ORV_EXPORT std::wstring AdressSettingsText(const FileSection& port);
ORV_EXPORT std::wstring RtaSettingsText(const FileSection& port);   ///< "RTA UDP 2020 GPS"
ORV_EXPORT std::wstring KrioSettingsText(const FileSection& port);  ///< "KRIO UDP 2020 GPS"
ORV_EXPORT std::wstring FileSettingsText(const FileSection& port);  ///< the name of the file

/// The one of these that the edit form of the port's handler shows; empty for a handler without a registered form.
ORV_EXPORT std::wstring PortSettingsText(const FileSection& port);

}  // namespace orv
