#include "ProjGeoDatabase.h"

#include <algorithm>
#include <cmath>

#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileSystem.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr std::wstring_view kFileName = L"CoordSystems.geo";
constexpr std::wstring_view kRenamedSection = L"Renamed";
constexpr std::wstring_view kZone = L"<zone>";     // the zone's number
constexpr std::wstring_view kZone2 = L"<zone:2>";  // with two digits
constexpr wchar_t kGroupEnd = L'/';                // between group and system in a section name
constexpr std::wstring_view kDefaultBase = L"EPSG:4326";

namespace key {
constexpr std::wstring_view definition = L"Definition", base = L"Base", zones = L"Zones", unit = L"Unit",
                            projection = L"Projection", ellipsoid = L"Ellipsoid", transformation = L"Transformation",
                            description = L"Description", geoidModel = L"GeoidModel", geoidFile = L"GeoidFile",
                            chartDatum = L"GeoidChartDatum", separation = L"ManualSeparation", postModel = L"PostModel",
                            postFile = L"PostFile", correction = L"PostCorrection",
                            correctionType = L"PostCorrectionType", correctionText = L"PostCorrectionText";
}

std::wstring SectionOf(std::wstring_view group, std::wstring_view system) {
    return std::wstring(group) + kGroupEnd + std::wstring(system);
}

bool SplitSection(const std::wstring& section, std::wstring& group, std::wstring& system) {
    const std::size_t end = section.find(kGroupEnd);
    if (end == section.npos) return false;
    group = section.substr(0, end);
    system = section.substr(end + 1);
    return true;
}

void ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
}

std::wstring WithZone(std::wstring text, const std::wstring& zone) {
    if (zone.empty()) return text;
    ReplaceAll(text, kZone2, zone.size() < 2 ? L"0" + zone : zone);
    ReplaceAll(text, kZone, zone);
    return text;
}

/// First and last zone of a series, at most 999 of them.
bool ZoneRange(const FileObject& file, const std::wstring& section, int& first, int& last) {
    std::wstring text;
    if (!file.GetItem(section, key::zones, text)) return false;
    const COrvString ends(text, L'-', true);
    return ends.GetItem(0, first) && ends.GetItem(ends.Size() > 1 ? 1 : 0, last) && first >= 0 && last < 1000;
}

/// The zone by which `system` belongs to the series `pattern`; empty if it doesn't.
std::wstring ZoneOf(const FileObject& file, const std::wstring& section, std::wstring_view pattern,
                    std::wstring_view system) {
    const std::size_t at = pattern.find(kZone);
    int first = 0, last = 0;
    if (at == pattern.npos) return {};
    const std::wstring_view tail = pattern.substr(at + kZone.size());
    if (system.size() <= at + tail.size() || !system.starts_with(pattern.substr(0, at)) || !system.ends_with(tail)) {
        return {};
    }
    const std::wstring zone(system.substr(at, system.size() - at - tail.size()));
    const std::optional<int> number = ParseInt(zone);
    // Spelled as a list shows it: no sign, no leading zero.
    if (!number || IntText(*number) != zone || !ZoneRange(file, section, first, last)) return {};
    return *number >= first && *number <= last ? zone : std::wstring();
}

void AddIfNew(std::vector<std::wstring>& names, const std::wstring& name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

template <class Visit>
void ForEachSystemSection(const FileObject& file, Visit&& visit) {
    FobjSection cursor;
    std::wstring section, group, system;
    for (bool more = file.GetFirstSectionEntry(cursor, section); more;
         more = file.GetNextSectionEntry(cursor, section)) {
        if (SplitSection(section, group, system)) visit(section, group, system);
    }
}

bool SameName(std::wstring_view a, std::wstring_view b) {
    return EqualNoCase(TrimBlanks(a), TrimBlanks(b));
}

std::wstring FolderOf(int location) {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(location, folder)) folder.clear();
    return folder;
}

/// A host that hasn't started its data search yet still gets the shipped systems.
std::wstring ApplicationFolder() {
    std::wstring folder = FolderOf(kLocationSystem);
    if (folder.empty()) {
        folder = GetAppPath();
        CheckAppPathForDevelopEnvironment(folder);
    }
    return folder;
}

}  // namespace

void ProjGeoDatabase::Refresh() {
    Refresh(shipped, ApplicationFolder());
    Refresh(own, FolderOf(kLocationSystemData));
    // A host whose folders are one and the same has one file, which is its own.
    if (shipped.path == own.path) shipped.file = FileObject();
}

void ProjGeoDatabase::Refresh(Source& source, const std::wstring& folder) {
    const std::wstring path = folder.empty() ? folder : folder + std::wstring(kFileName);
    FileStatus status;
    const bool asked = !path.empty() && Files().Status(path, status) == FsResult::Ok;
    const bool there = asked && status.exists;
    if (there && path == source.path && !source.unreadable && status.size == source.size &&
        status.modified == source.modified && status.modifiedNanoseconds == source.modifiedNanoseconds) {
        return;
    }
    source.file = FileObject();
    source.path = path;
    source.size = status.size;
    source.modified = status.modified;
    source.modifiedNanoseconds = status.modifiedNanoseconds;
    source.unreadable = (!path.empty() && !asked) || (there && !source.file.FileOpen(path, kOpenRead));
}

std::vector<ProjGeoDatabase::Place> ProjGeoDatabase::PlacesOf(const std::wstring& group,
                                                              const std::wstring& system) const {
    std::vector<Place> places, series, groups;
    for (const FileObject* file : {&own.file, &shipped.file}) {
        const std::wstring section = SectionOf(group, system);
        if (file->HasSection(section)) places.push_back({file, section, {}});
        ForEachSystemSection(*file,
                             [&](const std::wstring& name, const std::wstring& itsGroup, const std::wstring& pattern) {
                                 if (itsGroup != group) return;
                                 if (const std::wstring zone = ZoneOf(*file, name, pattern, system); !zone.empty()) {
                                     series.push_back({file, name, zone});
                                 }
                             });
        if (file->HasSection(group)) groups.push_back({file, group, {}});
    }
    // What holds for a whole group makes no system by itself.
    if (places.empty() && series.empty()) return {};
    places.insert(places.end(), series.begin(), series.end());
    places.insert(places.end(), groups.begin(), groups.end());
    return places;
}

std::wstring ProjGeoDatabase::Item(const std::vector<Place>& places, std::wstring_view name) {
    std::wstring value;
    for (const Place& place : places) {
        if (place.file->GetItem(place.section, name, value)) return WithZone(value, place.zone);
    }
    return {};
}

std::optional<GeoSystem> ProjGeoDatabase::Find(const std::wstring& group, const std::wstring& system) {
    Refresh();
    const std::vector<Place> places = PlacesOf(group, system);
    GeoSystem found;
    found.definition = Item(places, key::definition);
    if (found.definition.empty()) return {};
    found.base = Item(places, key::base);
    if (found.base.empty()) found.base = kDefaultBase;
    found.unit = Item(places, key::unit);
    if (found.unit.empty()) found.unit = UNIT_METERS;
    found.projection = Item(places, key::projection);
    found.ellipsoid = Item(places, key::ellipsoid);
    found.transformation = Item(places, key::transformation);
    found.description = Item(places, key::description);
    found.geoidModel = Item(places, key::geoidModel);
    found.geoidFile = Item(places, key::geoidFile);
    found.chartDatum = Item(places, key::chartDatum);
    found.postModel = Item(places, key::postModel);
    found.postFile = Item(places, key::postFile);
    found.manualSeparation = ParseDouble(Item(places, key::separation)).value_or(0.0);
    const COrvString correction(Item(places, key::correction), L',', true);
    correction.GetItem(0, found.postX);
    correction.GetItem(1, found.postY);
    correction.GetItem(2, found.postZ);
    return found;
}

bool ProjGeoDatabase::Known(const std::wstring& group, const std::wstring& system) {
    return Find(group, system).has_value();
}

bool ProjGeoDatabase::UnitDefinition(const std::wstring& name, std::wstring& text, std::wstring& mnemonic,
                                     double& factor, int& number) {
    Refresh();
    for (const FileObject* file : {&own.file, &shipped.file}) {
        FobjSection cursor;
        std::wstring unit, value;
        for (bool more = file->GetFirstMapEntry(cursor, UNITS_SECTION, unit, value); more;
             more = file->GetNextMapEntry(cursor, unit, value)) {
            const COrvString items(value, L',', true);
            double metres = 0.0;
            if (!SameName(unit, name) || !items.GetItem(0, metres) || !std::isfinite(metres) || metres <= 0.0) continue;
            factor = metres;
            mnemonic = items.Size() > 1 ? items[1] : std::wstring();
            text = unit;
            number = 0;
            return true;
        }
    }
    return false;
}

std::wstring ProjGeoDatabase::UnitOfSystem(const std::wstring& group, const std::wstring& system) {
    const std::optional<GeoSystem> found = Find(group, system);
    return found ? found->unit : std::wstring();
}

std::wstring ProjGeoDatabase::ListEntry(const std::wstring& group, const std::wstring& system) {
    const std::optional<GeoSystem> found = Find(group, system);
    if (!found) return {};
    return system + (found->description.empty() ? L" (" + found->unit + L")" : L" - " + found->description);
}

std::vector<std::wstring> ProjGeoDatabase::Groups() {
    Refresh();
    std::vector<std::wstring> groups;
    for (const FileObject* file : {&shipped.file, &own.file}) {
        ForEachSystemSection(*file, [&](const std::wstring&, const std::wstring& group, const std::wstring&) {
            AddIfNew(groups, group);
        });
    }
    return groups;
}

std::vector<std::wstring> ProjGeoDatabase::Systems(const std::wstring& group) {
    Refresh();
    std::vector<std::wstring> systems;
    for (const FileObject* file : {&shipped.file, &own.file}) {
        ForEachSystemSection(
            *file, [&](const std::wstring& section, const std::wstring& itsGroup, const std::wstring& system) {
                int first = 0, last = -1;
                if (itsGroup != group) return;
                if (system.find(kZone) == system.npos) return AddIfNew(systems, system);
                if (!ZoneRange(*file, section, first, last)) return;
                for (int zone = first; zone <= last; ++zone) AddIfNew(systems, WithZone(system, IntText(zone)));
            });
    }
    // A section may hold no more than what was registered for a system that is no longer shipped.
    std::erase_if(systems,
                  [&](const std::wstring& system) { return Item(PlacesOf(group, system), key::definition).empty(); });
    return systems;
}

bool ProjGeoDatabase::Rename(std::wstring& group, std::wstring& system) {
    Refresh();
    const std::wstring wanted = SectionOf(TrimBlanks(group), TrimBlanks(system));
    for (const FileObject* file : {&own.file, &shipped.file}) {
        FobjSection cursor;
        std::wstring oldName, newName, newGroup, newSystem;
        for (bool more = file->GetFirstMapEntry(cursor, kRenamedSection, oldName, newName); more;
             more = file->GetNextMapEntry(cursor, oldName, newName)) {
            if (!SameName(oldName, wanted) || !SplitSection(newName, newGroup, newSystem)) continue;
            group = newGroup;
            system = newSystem;
            return true;
        }
    }
    for (const std::wstring& candidate : Groups()) {
        if (!SameName(candidate, group)) continue;
        for (const std::wstring& member : Systems(candidate)) {
            if (!SameName(member, system)) continue;
            group = candidate;
            system = member;
            return true;
        }
    }
    return false;
}

bool ProjGeoDatabase::ConvertOldLayout(ProjectDefinition& project, std::wstring& group, std::wstring& system) {
    const bool renamed = !Known(group, system) && Rename(group, system);
    return renamed || project.HasKey(COORDSYSTEM_SECTION, OLD_GEOID_MODE);
}

bool ProjGeoDatabase::AddGeoidModel(const std::wstring& group, const std::wstring& system, const std::wstring& typeKey,
                                    const std::wstring& fileName, bool overwrite) {
    const std::optional<GeoSystem> old = Find(group, system);
    if (!old || (!overwrite && !old->geoidModel.empty())) return false;
    // A chart datum is one of the model it was chosen for.
    const std::wstring datum = old->geoidModel == typeKey ? old->chartDatum : std::wstring();
    return Store(group, system, {{key::geoidModel, typeKey}, {key::geoidFile, fileName}, {key::chartDatum, datum}});
}

bool ProjGeoDatabase::AddManualSeparation(const std::wstring& group, const std::wstring& system,
                                          const std::wstring& typeKey, double separation, bool overwrite) {
    const std::optional<GeoSystem> old = Find(group, system);
    if (!old || !std::isfinite(separation) || (!overwrite && !old->geoidModel.empty())) return false;
    return Store(group, system,
                 {{key::geoidModel, typeKey},
                  {key::geoidFile, L""},
                  {key::chartDatum, L""},
                  {key::separation, ShortestText(separation)}});
}

bool ProjGeoDatabase::AddPostCorrection(const std::wstring& group, const std::wstring& system, double x, double y,
                                        double z, const std::wstring& typeKey, const std::wstring& text,
                                        bool overwrite) {
    const std::optional<GeoSystem> old = Find(group, system);
    if (!old || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return false;
    const bool had = !Item(PlacesOf(group, system), key::correction).empty();
    // No correction where there was none is nothing to keep.
    if (had ? !overwrite : (x == 0.0 && y == 0.0 && z == 0.0)) return false;
    COrvString correction(L',');
    correction += x;
    correction += y;
    correction += z;
    return Store(
        group, system,
        {{key::correction, correction.GetString()}, {key::correctionType, typeKey}, {key::correctionText, text}});
}

bool ProjGeoDatabase::AddModels(const CoordSysNames& names) {
    Items items;
    if (!names.geoidModelName.empty()) {
        items = {{key::geoidModel, names.geoidModelName},
                 {key::geoidFile, names.geoidModelFile},
                 {key::chartDatum, names.geoidChartDatum}};
    }
    if (!names.postModelName.empty()) {
        items.push_back({key::postModel, names.postModelName});
        items.push_back({key::postFile, names.postModelFile});
    }
    return Known(names.group, names.system) && Store(names.group, names.system, items);
}

/// Writes what differs from what is known into the installation's own file. The file is read again first, so that
/// another program's additions stay.
bool ProjGeoDatabase::Store(const std::wstring& group, const std::wstring& system, const Items& items) {
    Refresh();
    if (own.path.empty() || own.unreadable) return false;
    const std::vector<Place> places = PlacesOf(group, system);
    const std::wstring section = SectionOf(group, system);
    bool changed = false;
    for (const auto& [name, value] : items) {
        if (Item(places, name) != value) changed = own.file.SetItem(section, name, value, true) || changed;
    }
    const bool saved = changed && own.file.FileSave(own.path, kSave);
    if (changed) own.path.clear();  // read it as it is on disk now, saved or not
    return saved;
}

}  // namespace orv
