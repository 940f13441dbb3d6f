#include "definitions/PortHandlers.h"

#include "platform/text/CaseFold.h"

namespace orv {

namespace {

// clang-format off
constexpr PortHandler kHandlers[] = {
    {L"Serial",           PortKind::Serial,  NewPortForm::Com,    EditPortForm::Com},
    {L"Serial Usbl",      PortKind::Serial,  NewPortForm::Com,    EditPortForm::Com},
    {L"Serial Dvl",       PortKind::Serial,  NewPortForm::Com,    EditPortForm::Com},
    {L"MBRTU",            PortKind::Serial,  NewPortForm::RtuCom, EditPortForm::Com},
    {L"NCC",              PortKind::Untyped, NewPortForm::NccCom, EditPortForm::Com},
    {L"Socket",           PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"Q9KI",             PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"LUMEXA",           PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"EDGETECH",         PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"IMAGENEX",         PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"EIVA",             PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"IP Dvl",           PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"MBI",              PortKind::Network, NewPortForm::Net,    EditPortForm::Net},
    {L"RGL",              PortKind::Network, NewPortForm::Net,    EditPortForm::NetRgl},
    {L"PingDSP",          PortKind::Network, NewPortForm::Net,    EditPortForm::NetRgl},
    {L"FjordEye",         PortKind::Untyped, NewPortForm::Net,    EditPortForm::NetRgl},
    {L"RTA",              PortKind::Network, NewPortForm::Net,    EditPortForm::NetRta},
    {L"KELVA Remote IO",  PortKind::Network, NewPortForm::Net,    EditPortForm::NetKrio},
    {L"IP Video Camera",  PortKind::Network, NewPortForm::Net,    EditPortForm::NetCamera},
    {L"USB Video Camera", PortKind::Network, NewPortForm::Plain,  EditPortForm::Camera},
    {L"File",             PortKind::File,    NewPortForm::File,   EditPortForm::File},
    {L"OPC",              PortKind::Opc,     NewPortForm::None,   EditPortForm::None},
    {L"OpcUA",            PortKind::OpcUa,   NewPortForm::None,   EditPortForm::None},
    {L"IXXAT",            PortKind::Ixxat,   NewPortForm::None,   EditPortForm::None},
    // Of interface files from the field: read, and no longer offered.
    {L"XSE",              PortKind::Network, NewPortForm::None,   EditPortForm::None},
    {L"Q9K",              PortKind::Network, NewPortForm::None,   EditPortForm::None},
    {L"RHB",              PortKind::Network, NewPortForm::None,   EditPortForm::None},
    {L"CodaES",           PortKind::Network, NewPortForm::None,   EditPortForm::None},
    {L"IOM",              PortKind::Network, NewPortForm::None,   EditPortForm::None},
    {L"AXIO",             PortKind::Network, NewPortForm::None,   EditPortForm::None},
};
// clang-format on

constexpr std::wstring_view kParityNames[] = {L"No", L"Even", L"Mark", L"None", L"Odd", L"Space"};
constexpr std::wstring_view kParityCapitals[] = {L"NO", L"EVEN", L"MARK", L"NONE", L"ODD", L"SPACE"};

}  // namespace

std::span<const PortHandler> PortHandlers() {
    return kHandlers;
}

PortKind KindOfHandler(std::wstring_view handler) {
    for (const PortHandler& known : kHandlers) {
        if (known.name == handler) return known.kind;
    }
    return PortKind::Untyped;
}

std::wstring_view NameOfParity(long index) {
    return index < 0 || index >= std::ssize(kParityCapitals) ? std::wstring_view()
                                                             : kParityCapitals[static_cast<std::size_t>(index)];
}

int ParityOfName(std::wstring_view name) {
    for (int index = 0; index < std::ssize(kParityCapitals); ++index) {
        if (EqualNoCase(kParityCapitals[index], name)) return index;
    }
    return -1;
}

std::span<const std::wstring_view> ParityNames() {
    return kParityNames;
}

}  // namespace orv
