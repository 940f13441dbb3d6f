// Any bytes as a data definition and as an interface definition, asked everything that a host asks.

#include "Fuzz.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "definitions/DataDefinition.h"
#include "definitions/InterfaceDef.h"

namespace {

struct Definition : orv::DataDefinition {};

void AskItem(const Definition& definition, unsigned group, unsigned short code) {
    std::wstring text, mnemonic;
    unsigned short type = 0, length = 0, format = 0;
    int whole = 0;
    if (definition.GetGroupItemDef(group, code, text, mnemonic, type, length, format)) {
        REQUIRE(definition.GetGroupItemSimValInt(group, code, whole));
        REQUIRE(definition.GetGroupItemMnem(group, code, text) && text == mnemonic);
    }
    definition.GetGroupItemMapTxt(group, code, 1, text);
    definition.GetGroupItemDoubleToStr(group, code, 1e300, text);
    REQUIRE(text.size() < 1'000'000);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const orv::memfile bytes(data, size, orv::textencoding::utf8);
    Definition definition;
    orv::InterfaceDef ports;
    if (!definition.FileOpen(bytes, L"d.ini") || !ports.FileObject::FileOpen(bytes, L"p.ini")) return 0;
    const int devices = definition.GetNumDevices();
    unsigned group = 0;
    REQUIRE(definition.GetGroupIdByIndex(devices, group) == (devices > 0));
    for (const unsigned id : {0u, 1u, group, 1000u, 2000u}) {
        for (const int code : {0, 1, 99, 100, 200, 59999, 60000, 65535}) {
            AskItem(definition, id, static_cast<unsigned short>(code));
        }
        if (definition.GetGroupItemGroup(id, 0, group)) REQUIRE(id >= 2000);
    }
    orv::RegisterPortEditors();
    orv::FobjSection cursor;
    std::wstring port;
    for (bool more = ports.GetFirstSectionEntry(cursor, port); more; more = ports.GetNextSectionEntry(cursor, port)) {
        orv::PortSettings settings;
        if (!ports.GetPortSettings(port, settings)) continue;
        orv::PortSettingsText(settings.section);
        REQUIRE(ports.SetPortSettings(port, settings));
        REQUIRE(ports.GetPortSettings(port, settings));
    }
    return 0;
}
