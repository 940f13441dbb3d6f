#include "definitions/InterfaceDef.h"

#include <tuple>
#include <utility>

#include "definitions/PortHandlers.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

template <class Settings, class Value>
constexpr auto Key(std::wstring_view key, Value Settings::*member) {
    return std::pair{key, member};
}

// Keys and members of each kind of port, in the order of the file.

constexpr auto kSerialKeys =
    std::make_tuple(Key(L"Baudrate", &CSerialSettings::baudRate), Key(L"EventChar", &CSerialSettings::eventChar),
                    Key(L"Parity", &CSerialSettings::parity), Key(L"StopBits", &CSerialSettings::stopBits),
                    Key(L"DataBits", &CSerialSettings::dataBits), Key(L"OutCtsFlow", &CSerialSettings::outCtsFlow));

constexpr auto kNetworkKeys = std::make_tuple(Key(L"Name", &CNetSettings::name),                        //
                                              Key(L"LocalPort", &CNetSettings::localPort),              //
                                              Key(L"HostPort", &CNetSettings::hostPort),                //
                                              Key(L"HostPort2", &CNetSettings::hostPort2),              //
                                              Key(L"HostAdress", &CNetSettings::hostAdress),            //
                                              Key(NET_FILTERHOSTADDRESS, &CNetSettings::autoHostPort),  //
                                              Key(L"Protocol", &CNetSettings::protocol),                //
                                              Key(L"Protocol2", &CNetSettings::protocol2),              //
                                              Key(L"MulticastAdress", &CNetSettings::multicastAdress),  //
                                              Key(L"UseMulticast", &CNetSettings::useMulticast));

// Cameras and sonars have these too; no port needs them.
constexpr auto kCameraKeys = std::make_tuple(Key(L"HostAdressPrefix", &CNetSettings::hostAdressPrefix),
                                             Key(L"HostAdressPostfix", &CNetSettings::hostAdressPostfix),
                                             Key(L"LocalCamera", &CNetSettings::localCamera),
                                             Key(L"LastHostAdress", &CNetSettings::lastHostAdress));

constexpr auto kFileNameKey = std::make_tuple(Key(L"Filename", &CFileSettings::fileName));
constexpr auto kFileKeys = std::make_tuple(
    Key(L"FileLogPeriodMode", &CFileSettings::fileLogPeriodMode), Key(L"UserLogPeriod", &CFileSettings::userLogPeriod),
    Key(L"OverwriteOutputRate", &CFileSettings::overwriteOutputRate), Key(L"OutputRate", &CFileSettings::outputRate));

constexpr auto kOpcKeys =
    std::make_tuple(Key(L"OPCServer", &OPCSettings::server), Key(L"OPCHost", &OPCSettings::host),
                    Key(L"OPCForce1", &OPCSettings::force1), Key(L"OPCFSGateway", &OPCSettings::fsGateway));

constexpr auto kOpcUaKeys =
    std::make_tuple(Key(L"OpcUAHost", &OpcUaSettings::host), Key(L"OpcUAPort", &OpcUaSettings::port),
                    Key(L"OpcUASecurityPolicy", &OpcUaSettings::securityPolicy),
                    Key(L"OpcUAMessageSecurityMode", &OpcUaSettings::messageSecurityMode),
                    Key(L"OpcUACertificate", &OpcUaSettings::certificate));

constexpr auto kIxxatKeys =
    std::make_tuple(Key(L"IXXATname", &IXXATSettings::name), Key(L"IXXATbus", &IXXATSettings::bus),
                    Key(L"IXXATline", &IXXATSettings::line));

/// Reads all keys of a table, in their order; true if each was there.
template <class Keys, class Settings>
bool ReadKeys(const FileObject& file, std::wstring_view port, const Keys& keys, Settings& settings) {
    bool all = true;
    const auto read = [&](const auto& row) { all = file.GetItem(port, row.first, settings.*row.second) && all; };
    std::apply([&](const auto&... row) { (read(row), ...); }, keys);
    return all;
}

template <class Keys, class Settings>
bool WriteKeys(FileObject& file, std::wstring_view port, const Keys& keys, const Settings& settings) {
    bool all = true;
    const auto write = [&](const auto& row) { all = file.SetItem(port, row.first, settings.*row.second, true) && all; };
    std::apply([&](const auto&... row) { (write(row), ...); }, keys);
    return all;
}

/// Reads a kind of port that can't do without any of its keys. A value that doesn't convert ("CAN1" for a bus) is there
/// all the same, and leaves its default.
template <class Keys, class Settings>
bool ReadAll(const FileObject& file, std::wstring_view port, const Keys& keys, std::unique_ptr<Settings>& out) {
    out = std::make_unique<Settings>();
    ReadKeys(file, port, keys, *out);
    return std::apply([&](const auto&... row) { return (file.HasKey(port, row.first) && ...); }, keys);
}

// "COM3" is port 3, and so is the "MBRTU_COM3" of a bus that is shared by name.
int PortNumber(std::wstring_view port) {
    constexpr std::wstring_view kBusPrefix = L"MBRTU_COM";
    if (port.size() > kBusPrefix.size() && port.starts_with(kBusPrefix)) {
        return ParseLeadingInt(port.substr(kBusPrefix.size()));
    }
    return port.starts_with(COM_SECTION) ? ParseLeadingInt(port.substr(COM_SECTION.size())) : 0;
}

constexpr std::wstring_view kStopBits[] = {L"1", L"1.5", L"2"};

// The suite's first versions counted their ports in brackets, and had sixteen of each kind.
constexpr int kOldPorts = 16;
constexpr struct {
    std::wstring_view section, handler;
} kOldNames[] = {{COM_SECTION, L"Serial"}, {NET_SECTION, L"Socket"}};

}  // namespace

InterfaceDef& InterfaceDef::Instance() {
    static InterfaceDef instance;
    return instance;
}

// ---- opening

bool InterfaceDef::FileOpen(std::wstring_view path) {
    const bool opened = FileObject::FileOpen(path, kOpenRead);
    // A sonar file chosen for one session doesn't survive into the next.
    bool changed = false;
    FobjSection cursor;
    std::wstring port;
    for (bool more = GetFirstSectionEntry(cursor, port); more; more = GetNextSectionEntry(cursor, port)) {
        std::wstring handler, adress, last;
        if (!GetItem(port, NET_HANDLER, handler) || handler != L"FjordEye") continue;
        if (!GetItem(port, L"HostAdress", adress) || adress.find(L"file:") == std::wstring::npos) continue;
        GetItem(port, L"LastHostAdress", last);
        changed |= SetItem(port, L"HostAdress", last, true);
    }
    if (changed) FileSave(L"", kSave);
    return opened;
}

bool InterfaceDef::AfterFileOpen() {
    for (const auto& old : kOldNames) {
        for (int number = 1; number <= kOldPorts; ++number) {
            const std::wstring text = IntText(number), name = std::wstring(old.section) + text;
            // Where both names exist the new one is in use, and the old one is left for a person to judge.
            if (!RenameSection(std::wstring(old.section) + L"(" + text + L")", name)) continue;
            SetItem(name, COM_HANDLER, old.handler, true);
        }
    }
    return true;
}

// ---- settings

bool InterfaceDef::GetPortSettings(std::wstring_view portName, PortSettings& out) const {
    PortSettings found;
    std::wstring handler;
    if (!found.section.GetFromFileObject(portName, *this) || !GetItem(portName, COM_HANDLER, handler)) return false;
    bool complete = true;
    switch (KindOfHandler(handler)) {
        case PortKind::Untyped:
            break;
        case PortKind::Serial:
            found.serial = std::make_unique<CSerialSettings>();
            GetCommPort(portName, *found.serial);
            break;
        case PortKind::Network:
            found.network = std::make_unique<CNetSettings>();
            GetNetPort(portName, *found.network);
            ReadKeys(*this, portName, kCameraKeys, *found.network);
            break;
        case PortKind::File:
            complete = ReadAll(*this, portName, kFileNameKey, found.file);
            ReadKeys(*this, portName, kFileKeys, *found.file);
            break;
        case PortKind::Opc:
            complete = ReadAll(*this, portName, kOpcKeys, found.opc);
            break;
        case PortKind::OpcUa:
            complete = ReadAll(*this, portName, kOpcUaKeys, found.opcUa);
            break;
        case PortKind::Ixxat:
            complete = ReadAll(*this, portName, kIxxatKeys, found.ixxat);
            break;
    }
    if (complete) out = std::move(found);
    return complete;
}

bool InterfaceDef::SetPortSettings(std::wstring_view portName, const PortSettings& settings) {
    settings.section.SetToFileObject(portName, *this);
    if (settings.serial) SetCommPort(portName, *settings.serial);
    if (settings.network) SetNetPort(portName, *settings.network);
    return true;
}

bool InterfaceDef::GetCommPort(std::wstring_view portName, CSerialSettings& out) const {
    out.portNumber = PortNumber(portName);
    return ReadKeys(*this, portName, kSerialKeys, out);
}

bool InterfaceDef::GetNetPort(std::wstring_view portName, CNetSettings& out) const {
    return ReadKeys(*this, portName, kNetworkKeys, out);
}

bool InterfaceDef::SetCommPort(std::wstring_view portName, const CSerialSettings& settings) {
    return WriteKeys(*this, portName, kSerialKeys, settings);
}

bool InterfaceDef::SetNetPort(std::wstring_view portName, const CNetSettings& settings) {
    return WriteKeys(*this, portName, kNetworkKeys, settings);
}

// ---- serial ports in texts

bool InterfaceDef::DefineCOMport(std::wstring_view portName, int baudRate, int dataBits, std::wstring_view parityText,
                                 std::wstring_view stopBitsText) {
    bool all = SetItem(portName, COM_HANDLER, L"Serial", true) && SetItem(portName, L"Baudrate", baudRate, true) &&
               SetItem(portName, L"DataBits", dataBits, true);
    const auto store = [&](std::wstring_view key, int value) {
        if (value < 0 || !SetItem(portName, key, value, true)) all = false;
    };
    store(L"Parity", ParityOfName(parityText));
    int stopBits = -1;
    for (int index = 0; index < 3; ++index) {
        if (kStopBits[index] == stopBitsText) stopBits = index + 1;
    }
    store(L"StopBits", stopBits);
    return all;
}

bool InterfaceDef::GetCOMportSettings(std::wstring_view portName, int& outBaudRate, int& outDataBits,
                                      std::wstring& outParityText, std::wstring& outStopBitsText) const {
    int baudRate = 0, dataBits = 0, parity = 0, stopBits = 0;
    if (!GetItem(portName, L"Baudrate", baudRate) || !GetItem(portName, L"DataBits", dataBits) ||
        !GetItem(portName, L"Parity", parity) || !GetItem(portName, L"StopBits", stopBits)) {
        return false;
    }
    const std::wstring_view parityText = NameOfParity(parity);
    if (parityText.empty() || stopBits < 1 || stopBits > 3) return false;
    outBaudRate = baudRate;
    outDataBits = dataBits;
    outParityText = parityText;
    outStopBitsText = kStopBits[stopBits - 1];
    return true;
}

}  // namespace orv
