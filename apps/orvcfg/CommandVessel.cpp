#include <array>
#include <functional>
#include <optional>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "VesselFile.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string vessel, item, value;
    unsigned device = 0;
    bool dryRun = false;
};

// ---- what there is

template <class Get>
Cell Metres(const VesselConfig& vessel, Get get, bool valid = true) {
    double value = 0;
    if (!(vessel.*get)(value)) return Cell::Missing("not in the file");
    if (!valid) return Cell::Missing("marked as not set");
    return Cell::Number(value, 3);
}

template <class Get>
Cell Text(const VesselConfig& vessel, Get get) {
    std::wstring value;
    (vessel.*get)(value);
    return Cell::OrMissing(value, "not in the file");
}

Cell GroupCell(Session& session, unsigned group) {
    return Cell::OrMissing(GroupName(session, group), "the data definition doesn't know the group");
}

void AddVesselFacts(Document& document, const VesselConfig& vessel) {
    Facts& facts = document.AddFacts("Vessel", "vessel");
    std::wstring guid;
    unsigned id = 0;
    bool draftValid = true;
    vessel.GetItem(L"VesselGuid", L"GUID", guid);
    vessel.IsVesselDraftValid(draftValid);
    facts.Add("Name", "name", Cell::Of(vessel.GetVesselName()));
    facts.Add("Id in references", "id", vessel.GetVesselID(id) ? Cell::Count(id) : Cell::Missing("nothing refers"));
    facts.Add("Identity", "guid", Cell::OrMissing(guid, "made at the first exchange"));
    facts.Add("Length (m)", "length", Metres(vessel, &VesselConfig::GetVesselLength));
    facts.Add("Width (m)", "width", Metres(vessel, &VesselConfig::GetVesselWidth));
    facts.Add("Height (m)", "height", Metres(vessel, &VesselConfig::GetVesselHeight));
    facts.Add("Draft (m)", "draft", Metres(vessel, &VesselConfig::GetVesselDraft, draftValid));
    facts.Add("Turn radius (m)", "turnRadius", Metres(vessel, &VesselConfig::GetVesselTurnRadius));
    facts.Add("Contour", "contour", Text(vessel, &VesselConfig::GetVesselContour));
    facts.Add("Run lines", "runlines", Text(vessel, &VesselConfig::GetVesselRunlines));
    facts.Add("Model to update", "updateDtm", Text(vessel, &VesselConfig::GetUpdateDtm));
    facts.Add("Alarms", "alarms", Text(vessel, &VesselConfig::GetVesselAlarms));
    facts.Add("Devices", "devices", Cell::Count(vessel.GetNumDevices()));
    facts.Add("Computations", "computations", Cell::Count(vessel.GetNumComputations()));
    facts.Add("Data sources", "dataSources", Cell::Count(vessel.GetNumDataSources()));
    facts.Add("Offsets", "offsets", Cell::Count(vessel.GetNumOffsets()));
}

void FillDevices(Session& session, const VesselConfig& vessel, Table& table) {
    for (const VesselDevice& device : DevicesOf(vessel)) {
        table.Add({Cell::Count(device.no), Cell::Of(device.name), Cell::Count(device.group),
                   GroupCell(session, device.group), Cell::Of(device.port), Cell::Count(device.subSystem),
                   Cell::Flag(device.enabled), Cell::OrMissing(device.driver, "no driver")});
    }
}

std::vector<Column> DeviceColumns() {
    return {{"No", "no", true},     {"Name", "name"},    {"Group", "group", true},
            {"Data", "data"},       {"Port", "port"},    {"Sub-system", "subSystem", true},
            {"Enabled", "enabled"}, {"Driver", "driver"}};
}

void FillOffsets(VesselConfig& vessel, Table& table) {
    for (unsigned no = 1, count = vessel.GetNumOffsets(); no <= count; ++no) {
        std::wstring name, key, value;
        double x = 0, y = 0, z = 0;
        if (!vessel.GetOffset(no, name, x, y, z)) {
            const Cell none = Cell::Missing("the offset doesn't read");
            table.Add({Cell::Count(no), none, none, none, none, none});
            continue;
        }
        std::string users;
        unsigned device = 0;
        for (int mode = kSearchFirst; vessel.FindOffsetUsage(name, mode, device, key, value); mode = kSearchNext) {
            users += (users.empty() ? "" : ", ") + std::to_string(device);
        }
        table.Add({Cell::Count(no), Cell::Of(name), Cell::Number(x, 3), Cell::Number(y, 3), Cell::Number(z, 3),
                   users.empty() ? Cell::Missing("no device refers to it") : Cell::Of(users)});
    }
}

std::vector<Column> OffsetColumns() {
    return {{"No", "no", true},   {"Name", "name"},     {"X (m)", "x", true},
            {"Y (m)", "y", true}, {"Z (m)", "z", true}, {"Used by devices", "devices"}};
}

ExitCode Show(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    Document document;
    ReportVessel(session, document, vessel);
    document.Print(session);
    return kAllGood;
}

ExitCode Devices(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    Table table(DeviceColumns());
    FillDevices(session, vessel, table);
    Document::Print(session, table);
    return kAllGood;
}

ExitCode Offsets(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    Table table(OffsetColumns());
    FillOffsets(vessel, table);
    Document::Print(session, table);
    return kAllGood;
}

// ---- set

using Change = std::function<bool(VesselConfig&, const std::wstring&, unsigned device)>;
struct Settable {
    const char* name;
    const char* what;
    bool ofDevice;
    Change change;
};

Change Number(bool (VesselConfig::*set)(double)) {
    return [set](VesselConfig& vessel, const std::wstring& text, unsigned) {
        const std::optional<double> value = ParseDouble(text);
        return value && (vessel.*set)(*value);
    };
}

Change Name(bool (VesselConfig::*set)(const std::wstring&)) {
    return [set](VesselConfig& vessel, const std::wstring& text, unsigned) { return (vessel.*set)(text); };
}

const std::vector<Settable>& Settables() {
    static const std::vector<Settable> rows = {
        {"id", "vessel id of all references", false,
         [](VesselConfig& vessel, const std::wstring& text, unsigned) {
             const std::optional<unsigned> id = ParseUnsigned(text);
             return id && vessel.SetVesselID(*id);
         }},
        {"draft", "metres", false, Number(&VesselConfig::SetVesselDraft)},
        {"length", "metres", false, Number(&VesselConfig::SetVesselLength)},
        {"width", "metres", false, Number(&VesselConfig::SetVesselWidth)},
        {"height", "metres", false, Number(&VesselConfig::SetVesselHeight)},
        {"turn-radius", "metres", false, Number(&VesselConfig::SetVesselTurnRadius)},
        {"sealevel", "metres", false, Number(&VesselConfig::SetSealevel)},
        {"offtrack-limit", "metres", false, Number(&VesselConfig::SetOfftrackLimit)},
        {"contour", "contour file", false, Name(&VesselConfig::SetVesselContour)},
        {"runlines", "run line file", false, Name(&VesselConfig::SetVesselRunlines)},
        {"alarms", "alarm map", false, Name(&VesselConfig::SetVesselAlarms)},
        {"update-dtm", "model to update", false, Name(&VesselConfig::SetUpdateDtm)},
        {"port", "port of a device", true,
         [](VesselConfig& vessel, const std::wstring& text, unsigned no) {
             return vessel.SetDevicePortAttribs(no, text);
         }},
        {"enable", "1 or 0, of a device", true,
         [](VesselConfig& vessel, const std::wstring& text, unsigned no) {
             const std::optional<bool> on = ParseBool(text);
             return on && vessel.SetDeviceEnable(no, *on ? 1 : 0);
         }},
        {"name", "name of a device", true,
         [](VesselConfig& vessel, const std::wstring& text, unsigned no) {
             return vessel.SetItem(NumberedSection(kDeviceWord, no), L"UserName", text, true);
         }},
    };
    return rows;
}

ExitCode Set(Session& session, const Arguments& arguments) {
    const std::wstring item = TextArgument(arguments.item);
    std::vector<std::wstring> names;
    const Settable* row = nullptr;
    for (const Settable& known : Settables()) {
        names.push_back(FromUtf8(known.name));
        if (names.back() == item) row = &known;
    }
    if (!row) {
        session.Problem({}, "\"" + arguments.item + "\" can't be set", DidYouMean(item, names));
        return kCannotRun;
    }
    if (row->ofDevice != (arguments.device != 0)) {
        session.Problem({}, arguments.item + (row->ofDevice ? " is of a device" : " isn't of a device"),
                        row->ofDevice ? "Name it with --device N." : "Leave --device out.");
        return kCannotRun;
    }
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    const std::string file = PathToBytes(vessel.GetFileName());
    if (row->ofDevice && !vessel.HaveDevice(arguments.device)) {
        session.Problem(file, "No device " + std::to_string(arguments.device), "\"orvcfg vessel devices\" shows them.");
        return kSomeFailed;
    }
    MergeSave merge(vessel);
    if (!row->change(vessel, TextArgument(arguments.value), arguments.device)) {
        session.Problem(file, "\"" + arguments.value + "\" is no value for " + arguments.item,
                        std::string("Expected: ") + row->what + ".");
        return kSomeFailed;
    }
    if (!SaveVessel(session, vessel, merge)) return kSomeFailed;
    session.Note("saved " + file);
    return kAllGood;
}

std::string SetHelp() {
    std::string text = "  orvcfg vessel set Sounder[navigate].vcf draft 1.42\n\nItems:\n";
    for (const Settable& row : Settables()) {
        std::string name = row.name;
        name.resize(16, ' ');
        text += "  " + name + row.what + "\n";
    }
    return text;
}

// ---- renumber

ExitCode Renumber(Session& session, const Arguments& arguments) {
    constexpr std::wstring_view kMark = L"RenumberedFrom";
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    VesselConfig marked = vessel;  // each device carries its old number along
    for (const unsigned no : NumbersOf(vessel, kDeviceWord)) {
        marked.SetItem(NumberedSection(kDeviceWord, no), kMark, no, true);
    }
    const bool ordered = OrderDevicesOf(session, vessel);
    marked.CloseDeviceGaps();
    if (ordered) marked.OrderDevices();
    Table table({{"Was", "was", true}, {"Is", "is", true}, {"Name", "name"}});
    bool changed = false;
    for (const VesselDevice& device : DevicesOf(marked)) {
        unsigned was = 0;
        marked.GetItem(device.section, kMark, was);
        if (was == device.no) continue;
        changed = true;
        table.Add({Cell::Count(was), Cell::Count(device.no), Cell::Of(device.name)});
    }
    Document::Print(session, table);
    const ExitCode result = ordered ? kAllGood : kSomeFailed;
    if (!changed && ordered) session.Note("the devices are in order");
    if (changed && arguments.dryRun) session.Note("nothing has been written");
    if (!changed || arguments.dryRun) return result;
    if (!SaveVessel(session, vessel)) return kSomeFailed;
    session.Note("sections in other files that name devices by number are to be looked after by hand");
    return result;
}

}  // namespace

void ReportVessel(Session& session, Document& document, VesselConfig& vessel) {
    AddVesselFacts(document, vessel);
    FillDevices(session, vessel, document.AddTable("Devices", "deviceList", DeviceColumns()));
    Table& computations =
        document.AddTable("Computations", "computationList",
                          {{"No", "no", true}, {"Name", "name"}, {"Group", "group", true}, {"Data", "data"}});
    for (const unsigned no : NumbersOf(vessel, kComputationWord)) {
        std::wstring name, section;
        unsigned group = 0;
        vessel.GetComputation(no, name, group, section);
        computations.Add({Cell::Count(no), Cell::Of(name), Cell::Count(group), GroupCell(session, group)});
    }
    Table& sources = document.AddTable("Data sources", "dataSourceList",
                                       {{"No", "no", true}, {"Switches", "autoSwitch"}, {"Order", "order"}});
    for (const unsigned no : NumbersOf(vessel, kDataSourceWord)) {
        if (no > 0xFFFF) continue;
        const auto source = static_cast<unsigned short>(no);
        std::wstring order;
        vessel.GetDataConditionsOrder(source, order);
        sources.Add({Cell::Count(no), Cell::Flag(vessel.GetAutoSwitch(source)), Cell::OrMissing(order, "none stored")});
    }
    FillOffsets(vessel, document.AddTable("Offsets", "offsetList", OffsetColumns()));
}

void AddVessel(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "vessel", "Show, check, change and exchange vessels");
    struct Simple {
        const char *name, *what, *example;
        ExitCode (*run)(Session&, const Arguments&);
    };
    for (const Simple& row : std::initializer_list<Simple>{
             {"show", "Show a vessel with all it carries", "  orvcfg vessel show Sounder[navigate].vcf", Show},
             {"devices", "List the devices", "  orvcfg vessel devices Sounder[navigate].vcf --json", Devices},
             {"offsets", "List the offset points and who uses them", "  orvcfg vessel offsets Sounder[navigate].vcf",
              Offsets}}) {
        auto arguments = std::make_shared<Arguments>();
        CLI::App* command = AddCommand(*group, row.name, row.what, row.example);
        command->add_option("VESSEL", arguments->vessel, "Vessel file, or a vessel of the project")->required();
        OnRun(command, session, arguments, row.run);
    }
    auto changed = std::make_shared<Arguments>();
    CLI::App* set = AddCommand(*group, "set", "Change one thing of a vessel", SetHelp());
    set->add_option("VESSEL", changed->vessel, "Vessel file, or a vessel of the project")->required();
    set->add_option("ITEM", changed->item, "What to change")->required();
    set->add_option("VALUE", changed->value, "Its new value")->required();
    set->add_option("--device", changed->device, "Number of the device")->type_name("N");
    OnRun(set, session, changed, Set);

    auto ordered = std::make_shared<Arguments>();
    CLI::App* renumber = AddCommand(*group, "renumber",
                                    "Close gaps in the numbers of the devices, and order them by sub-system and group",
                                    "  orvcfg vessel renumber Sounder[navigate].vcf --dry-run");
    renumber->add_option("VESSEL", ordered->vessel, "Vessel file, or a vessel of the project")->required();
    renumber->add_flag("--dry-run", ordered->dryRun, "Show it only");
    OnRun(renumber, session, ordered, Renumber);
    AddVesselCheck(*group, session);
    AddVesselExchange(*group, session);
}

}  // namespace orv::cfg
