#pragma once

#include <memory>
#include <string>

#include "core/FileSection.h"
#include "platform/Export.h"

namespace orv {

/// Key of every port: its handler, which selects what the other keys mean.
inline constexpr std::wstring_view COM_HANDLER = L"Handler";
inline constexpr std::wstring_view NET_HANDLER = L"Handler";
inline constexpr std::wstring_view NET_FILTERHOSTADDRESS = L"AutoHostPort";
inline constexpr std::wstring_view MODBUS_TCP_HANDLER = L"MBI";
/// How section names of ports start.
inline constexpr std::wstring_view COM_SECTION = L"COM";
inline constexpr std::wstring_view NET_SECTION = L"NET";

struct CSerialSettings {
    int portNumber = 0;   ///< from the name of the port; not a key
    int baudRate = 4800;  ///< bits per second
    int eventChar = 0;
    int parity = 0;    ///< index of "No", "Even", "Mark", "None", "Odd", "Space"
    int stopBits = 1;  ///< 1: 1, 2: 1.5, 3: 2
    int dataBits = 8;
    int outCtsFlow = 0;
    bool operator==(const CSerialSettings&) const = default;
};

struct CNetSettings {
    std::wstring name;
    int localPort = 0;
    int hostPort = 0, hostPort2 = 0;
    std::wstring hostAdress;
    bool autoHostPort = false;        ///< take information from this host only
    int protocol = 0, protocol2 = 0;  ///< 0 UDP, 1 TCP
    std::wstring multicastAdress;
    bool useMulticast = false;
    // Of cameras and sonars; read if they are there.
    std::wstring hostAdressPrefix, hostAdressPostfix;  ///< text around the address of a camera
    bool localCamera = false;                          ///< the camera is on this computer
    std::wstring lastHostAdress;                       ///< the address to return to after a file was replayed
    bool operator==(const CNetSettings&) const = default;
};

struct CFileSettings {
    std::wstring fileName;
    int fileLogPeriodMode = 0;
    int userLogPeriod = 0;
    bool overwriteOutputRate = false;
    double outputRate = 0;
    bool operator==(const CFileSettings&) const = default;
};

struct OPCSettings {
    std::wstring server, host;
    int force1 = 0;
    int fsGateway = 0;
    bool operator==(const OPCSettings&) const = default;
};

struct OpcUaSettings {
    std::wstring host;
    int port = 0;
    std::wstring securityPolicy, messageSecurityMode, certificate;
    bool operator==(const OpcUaSettings&) const = default;
};

struct IXXATSettings {
    std::wstring name;
    int bus = 0, line = 0;
    bool operator==(const IXXATSettings&) const = default;
};

/// All that a device needs to know of its port: the section as it stands, and the typed settings of the port's kind.
struct PortSettings {
    FileSection section;
    std::unique_ptr<CSerialSettings> serial;
    std::unique_ptr<CNetSettings> network;
    std::unique_ptr<OPCSettings> opc;
    std::unique_ptr<OpcUaSettings> opcUa;
    std::unique_ptr<CFileSettings> file;
    std::unique_ptr<IXXATSettings> ixxat;
};

}  // namespace orv
