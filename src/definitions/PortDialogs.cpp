#include "definitions/PortDialogs.h"

#include "definitions/InterfaceDef.h"

namespace orv {

namespace {

constexpr std::wstring_view kNoName = L"You must enter a name or cancel the dialog.";

/// What a new network port starts with.
struct NetDefaults {
    std::wstring_view handler;
    int hostPort;
    std::wstring_view hostAdress;
    int localPort, protocol;
    bool autoHostPort;
};
constexpr std::wstring_view kThisComputer = L"127.0.0.1";
constexpr NetDefaults kNetDefaults[] = {
    {L"Q9K", 7000, L"", 0, 1, true},
    {L"LUMEXA", 5000, kThisComputer, 0, 1, false},
    {L"EDGETECH", 1701, kThisComputer, 0, 1, false},
    {L"PingDSP", 23848, kThisComputer, 0, 1, false},
    {L"IMAGENEX", 0, kThisComputer, 4040, 0, false},
    {L"IP Dvl", 0, kThisComputer, 0, 0, false},
    {MODBUS_TCP_HANDLER, 502, kThisComputer, 502, 1, false},
};
constexpr NetDefaults kOtherNetDefaults = {L"", 0, L"", 0, 0, false};

const NetDefaults& DefaultsOf(std::wstring_view handler) {
    for (const NetDefaults& row : kNetDefaults) {
        if (row.handler == handler) return row;
    }
    return kOtherNetDefaults;
}

}  // namespace

bool IoPortNewDlg::Add(InterfaceDef& ports, std::wstring_view handler, std::wstring_view entered,
                       std::wstring& portName, PortRefusal& refusal) const {
    refusal = {};
    const std::wstring name = NameOf(entered, refusal);
    if (name.empty() || !CheckAndCreateSection(ports, name, handler, refusal)) return false;
    SetDefaults(ports, name, handler);
    portName = name;
    return true;
}

bool IoPortNewDlg::CheckAndCreateSection(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler,
                                         PortRefusal& refusal) {
    if (ports.HasSection(portName)) {
        refusal.text = L"Port already exists";
        return false;
    }
    if (!ports.CreateSection(portName, false)) {
        refusal.text = L"A port name cannot hold a line break.";
        return false;
    }
    return ports.SetItem(portName, COM_HANDLER, handler, true);
}

std::wstring IoPortNewDlg::NameOf(std::wstring_view entered, PortRefusal& refusal) const {
    if (entered.empty()) refusal.text = kNoName;
    return std::wstring(entered);
}

void IoPortNewDlg::SetDefaults(InterfaceDef& /*ports*/, std::wstring_view /*portName*/,
                               std::wstring_view /*handler*/) const {}

std::wstring CNewComportDlg::NameOf(std::wstring_view entered, PortRefusal& /*refusal*/) const {
    return entered.empty() ? std::wstring() : std::wstring(prefix).append(entered);
}

void CNewComportDlg::SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view /*handler*/) const {
    constexpr struct {
        const wchar_t* key;
        int value;
    } kDefaults[] = {{L"Baudrate", 4800}, {L"Parity", 0}, {L"StopBits", 1}, {L"DataBits", 8}};
    for (const auto& item : kDefaults) ports.SetItem(portName, item.key, item.value, true);
}

std::wstring CNewNetportDlg::NameOf(std::wstring_view entered, PortRefusal& refusal) const {
    if (entered.empty()) {
        refusal = {L"New network port error", std::wstring(kNoName)};
    } else if (entered.starts_with(COM_SECTION)) {
        refusal.text = L"Netport name cannot start with 'COM'";
    } else if (entered.find(L' ') != std::wstring_view::npos) {
        refusal = {L"New NetPort error",
                   L"A NetPort name cannot contain a space (' ').\nPlease correct the error or cancel the addition."};
    }
    return refusal.text.empty() ? std::wstring(entered) : std::wstring();
}

void CNewNetportDlg::SetDefaults(InterfaceDef& ports, std::wstring_view portName, std::wstring_view handler) const {
    const NetDefaults& defaults = DefaultsOf(handler);
    ports.SetItem(portName, L"HostPort", defaults.hostPort, true);
    ports.SetItem(portName, L"HostAdress", defaults.hostAdress, true);
    ports.SetItem(portName, L"LocalPort", defaults.localPort, true);
    ports.SetItem(portName, L"Protocol", defaults.protocol, true);
    ports.SetItem(portName, NET_FILTERHOSTADDRESS, defaults.autoHostPort, true);
}

void CNewFileportDlg::SetDefaults(InterfaceDef& ports, std::wstring_view portName,
                                  std::wstring_view /*handler*/) const {
    ports.SetItem(portName, L"Filename", L"", true);
}

}  // namespace orv
