#include <set>

#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "VesselFile.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string vessel, other;
};

/// Devices have limits in the application definition, by which the exchange decides what is common.
bool OpenFor(Session& session, const Arguments& arguments, VesselConfig& vessel) {
    return OpenInstallation(session) && OpenVessel(session, arguments.vessel, vessel);
}

ExitCode Push(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenFor(session, arguments, vessel)) return kCannotRun;
    MergeSave merge(vessel);
    const std::wstring common = AbsolutePath(PathArgument(arguments.other));
    const bool pushed = vessel.SaveCommonConfig(common);
    if (!pushed) {
        session.Problem(PathToBytes(common), "Not all of the vessel could be pushed",
                        "Check that the file can be read and written, and the vessel with \"orvcfg vessel check\".");
    }
    // Identifiers that it lacked are in the common file now: without them here the next exchange wouldn't know them.
    if (!SaveVessel(session, vessel, merge) || !pushed) return kSomeFailed;
    session.Note("pushed " + std::to_string(vessel.GetNumDevices()) + " devices to " + PathToBytes(common));
    return kAllGood;
}

ExitCode Pull(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenFor(session, arguments, vessel)) return kCannotRun;
    MergeSave merge(vessel);
    const std::wstring common = AbsolutePath(PathArgument(arguments.other));
    if (!vessel.OverLoadCommonConfig(common)) {
        session.Problem(PathToBytes(common), "Can't be pulled; the vessel stays as it was", "Check name and rights.");
        return kSomeFailed;
    }
    if (!SaveVessel(session, vessel, merge)) return kSomeFailed;
    session.Note("pulled; the vessel has " + std::to_string(vessel.GetNumDevices()) + " devices");
    return kAllGood;
}

ExitCode Apply(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    FileObject difference;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    MergeSave merge(vessel);
    const std::wstring path = AbsolutePath(PathArgument(arguments.other));
    if (!difference.FileOpen(path, kOpenRead)) {
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(difference.LastResult())),
                        "Check name and rights.");
        return kSomeFailed;
    }
    if (!vessel.ApplyDifference(difference)) {
        session.Problem(PathToBytes(path), "The difference can't be applied; the vessel stays as it was",
                        "Both files must have the same name.");
        return kSomeFailed;
    }
    return SaveVessel(session, vessel, merge) ? kAllGood : kSomeFailed;
}

// ---- diff

void CompareSections(const FileObject& left, const FileObject& right, const std::wstring& section, Table& table) {
    const auto add = [&](const std::wstring& key, const Cell& a, const Cell& b) {
        table.Add({Cell::Of(section), Cell::Of(key), a, b});
    };
    const auto cell = [&](const FileObject& file, const std::wstring& key) {
        std::wstring value;
        return file.GetItem(section, key, value) ? Cell::Of(value) : Cell::Missing("not there");
    };
    std::set<std::wstring> seen;
    for (const FileObject* file : {&left, &right}) {
        for (const std::wstring& key : KeysOf(*file, section)) {
            if (!seen.insert(key).second) continue;
            const Cell a = cell(left, key), b = cell(right, key);
            if (a.text != b.text || a.reason != b.reason) add(key, a, b);
        }
    }
}

ExitCode Diff(Session& session, const Arguments& arguments) {
    VesselConfig vessels[2];
    if (!OpenVessel(session, arguments.vessel, vessels[0]) || !OpenVessel(session, arguments.other, vessels[1])) {
        return kCannotRun;
    }
    bool ordered = true;
    for (VesselConfig& vessel : vessels) ordered = OrderDevicesOf(session, vessel) && ordered;
    Table table({{"Section", "section"}, {"Key", "key"}, {"First", "first"}, {"Second", "second"}});
    std::set<std::wstring> seen;
    for (const VesselConfig& vessel : vessels) {
        for (const std::wstring& section : SectionsOf(vessel)) {
            if (seen.insert(section).second) CompareSections(vessels[0], vessels[1], section, table);
        }
    }
    Document::Print(session, table);
    if (table.Empty()) session.Note("no difference");
    return table.Empty() && ordered ? kAllGood : kSomeFailed;
}

}  // namespace

void AddVesselExchange(CLI::App& vessel, Session& session) {
    struct Row {
        const char *name, *what, *other, *otherWhat, *example;
        ExitCode (*run)(Session&, const Arguments&);
    };
    for (const Row& row : std::initializer_list<Row>{
             {"push", "Put what the vessel shares into the common file", "COMMON", "Common file, made if it is missing",
              "  orvcfg vessel push Sounder[navigate].vcf /srv/common/Sounder.vcf", Push},
             {"pull", "Take what is shared out of the common file", "COMMON", "Common file",
              "  orvcfg vessel pull Sounder[navigate].vcf /srv/common/Sounder.vcf", Pull},
             {"diff", "Compare two vessels, their devices in one order; exit code 1 if they differ", "OTHER",
              "The other vessel", "  orvcfg vessel diff Sounder[navigate].vcf Backup[navigate].vcf", Diff},
             {"apply", "Apply a difference file, which has the vessel's name", "DIFFERENCE", "Difference file",
              "  orvcfg vessel apply Sounder[navigate].vcf incoming/Sounder[navigate].vcf", Apply}}) {
        auto arguments = std::make_shared<Arguments>();
        CLI::App* command = AddCommand(vessel, row.name, row.what, row.example);
        command->add_option("VESSEL", arguments->vessel, "Vessel file, or a vessel of the project")->required();
        command->add_option(row.other, arguments->other, row.otherWhat)->required();
        OnRun(command, session, arguments, row.run);
    }
}

}  // namespace orv::cfg
