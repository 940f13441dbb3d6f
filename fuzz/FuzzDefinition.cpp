// Any bytes as a data definition and as an interface definition, asked everything that a host asks.

#include "Fuzz.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "definitions/DataDefinition.h"
#include "definitions/InterfaceDef.h"

struct Definition : orv::DataDefinition {};

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const orv::memfile bytes(data, size, orv::textencoding::utf8);
    Definition definition;
    orv::InterfaceDef ports;
    if (!definition.FileOpen(bytes, L"d.ini") || !ports.FileObject::FileOpen(bytes, L"p.ini")) return 0;
    const int devices = definition.GetNumDevices();
    unsigned group = 0;
    REQUIRE(definition.GetGroupIdByIndex(devices, group) == (devices > 0));
    for (const unsigned id : {0u, 1u, group, 2000u}) {
        for (const int code : {0, 1, 99, 100, 200, 59999, 60000, 65535}) {
            const auto at = static_cast<unsigned short>(code);
            std::wstring text;
            int whole = 0;
            const bool hasName = definition.GetGroupItemName(id, at, text);
            REQUIRE(definition.GetGroupItemSimValInt(id, at, whole) <= (hasName || id >= 2000));
            definition.GetGroupItemMapTxt(id, at, 1, text);
            definition.GetGroupItemDoubleToStr(id, at, 1e300, text);
            REQUIRE(text.size() < 1'000'000);
        }
    }
    orv::RegisterPortEditors();
    orv::FobjSection cursor;
    std::wstring port;
    for (bool more = ports.GetFirstSectionEntry(cursor, port); more; more = ports.GetNextSectionEntry(cursor, port)) {
        orv::PortSettings settings;
        if (!ports.GetPortSettings(port, settings)) continue;
        orv::PortSettingsText(settings.section);
        REQUIRE(ports.SetPortSettings(port, settings) && ports.GetPortSettings(port, settings));
    }
    return 0;
}
