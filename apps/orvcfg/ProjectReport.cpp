#include "ProjectReport.h"

#include <array>

#include "PositionText.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "project/ProjectDefinition.h"

namespace orv::cfg {

namespace {

constexpr std::string_view kNotFilledIn = "not filled in";

using Getter = bool (ProjectDefinition::*)(std::wstring&) const;

Cell TextOf(const ProjectDefinition& project, Getter getter) {
    std::wstring text;
    (project.*getter)(text);
    return Cell::OrMissing(text, kNotFilledIn);
}

struct DecimalsRow {
    std::string_view label, name;
    bool (ProjectDefinition::*getter)(int&) const;
};
constexpr DecimalsRow kDecimals[] = {
    {"Grid", "grid", &ProjectDefinition::GetGridDecimals},
    {"Speed", "speed", &ProjectDefinition::GetSpeedDecimals},
    {"Distance", "distance", &ProjectDefinition::GetDistanceDecimals},
    {"Depth", "depth", &ProjectDefinition::GetDepthDecimals},
    {"Density", "density", &ProjectDefinition::GetDensityDecimals},
    {"Pressure", "pressure", &ProjectDefinition::GetPressureDecimals},
    {"Weight", "weight", &ProjectDefinition::GetWeightDecimals},
    {"KP", "kp", &ProjectDefinition::GetKpDecimals},
};

/// Words whose bits are set, as the formats page shows them.
std::string FlagText(unsigned flags, const std::array<std::string_view, 3>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if ((flags & (1u << i)) == 0) continue;
        if (!text.empty()) text += ", ";
        text += words[i];
    }
    return text.empty() ? "none" : text;
}

}  // namespace

void ReportProject(Document& document, const ProjectDefinition& project) {
    Facts& facts = document.AddFacts("Project", "project");
    facts.Add("Title", "title", TextOf(project, &ProjectDefinition::GetProjectTitle));
    facts.Add("Number", "number", TextOf(project, &ProjectDefinition::GetProjectNumber));
    facts.Add("Task", "task", TextOf(project, &ProjectDefinition::GetProjectTask));
    facts.Add("Client", "client", TextOf(project, &ProjectDefinition::GetClientName));
    facts.Add("Contractor", "contractor", TextOf(project, &ProjectDefinition::ContractorName));
    facts.Add("Application definition", "applicationDefinition", TextOf(project, &ProjectDefinition::GetAppDefinition));
    facts.Add("Application configuration", "applicationConfiguration",
              TextOf(project, &ProjectDefinition::GetAppConfiguration));
    facts.Add("File", "file", Cell::Path(project.GetFileName()));
    std::wstring folder;
    const bool logs = DataSearch::GetDataSearch().GetDataPathInfo(kLocationLogData, folder);
    facts.Add("Log data", "logData", logs ? Cell::Path(folder) : Cell::Missing("the project names no folder"));
}

GeoidChoice GeoidInForce(ProjectDefinition& project) {
    // What the coordinate system object knows goes into the project in memory only: nothing saves it.
    project._BackupCoordSysInfo();
    std::wstring group, system, key, unit, postName, postFile;
    GeoidChoice geoid;
    GetCoordSysData(&project, group, system, key, unit, geoid.key, geoid.file, geoid.chartDatum, postName, postFile);
    return geoid;
}

GeoidChoice ReportCoordinateSystem(Document& document, ProjectDefinition& project) {
    std::wstring group, system, key, unit, name, file, datum, postName, postFile, text;
    GetCoordSysData(&project, group, system, key, unit, name, file, datum, postName, postFile);
    const bool own = !name.empty();
    const GeoidChoice geoid = GeoidInForce(project);

    Facts& facts = document.AddFacts("Coordinate system", "coordinateSystem");
    facts.Add("Group", "group", Cell::OrMissing(group, "the project names none"));
    facts.Add("System", "system", Cell::OrMissing(system, "the project names none"));
    const auto ask = [&](bool (ProjectDefinition::*getter)(std::wstring&, std::wstring&) const) {
        std::wstring groupName, answer;
        (project.*getter)(groupName, answer);
        return Cell::OrMissing(answer, "the coordinate module gives none");
    };
    facts.Add("Projection", "projection", ask(&ProjectDefinition::GetProjectionName));
    facts.Add("Ellipsoid", "ellipsoid", ask(&ProjectDefinition::GetEllipsoidName));
    facts.Add("Transformation", "transformation", ask(&ProjectDefinition::GetTransformationName));
    facts.Add("Unit", "unit", Cell::OrMissing(unit, "the project names none"));
    if (geoid.key.empty()) {
        facts.Add("Geoid model", "geoidModel", Cell::Missing("none: heights stay above the ellipsoid"));
        return geoid;
    }
    Cell model = Cell::Of(geoid.key);
    if (!own) model.text += " (registered for the system)";
    facts.Add("Geoid model", "geoidModel", model);
    const OpenedGeoid opened = OpenGeoid(geoid);
    const std::wstring path = opened.path.empty() ? geoid.file : opened.path;
    facts.Add("Geoid file", "geoidFile", path.empty() ? Cell::Missing("the model needs none") : Cell::Path(path));
    Cell usable = Cell::Flag(opened.problem.empty());
    usable.reason = opened.problem;
    facts.Add("Geoid usable", "geoidUsable", usable);
    if (!geoid.chartDatum.empty()) facts.Add("Chart datum", "chartDatum", Cell::Of(geoid.chartDatum));
    return geoid;
}

void ReportFormats(Document& document, const ProjectDefinition& project) {
    Facts& formats = document.AddFacts("Formats", "formats");
    coord_format format = kGridFormat;
    project.GetCoordinateFormat(format);
    formats.Add("Coordinates", "coordinates", Cell::Of(std::string(format == kGridFormat ? "grid" : "geographic")));
    unsigned flags = 0;
    project.GetGeogsFlags(flags);
    formats.Add("Geographic format", "geographicFormat", Cell::Of(FlagText(flags, {"degrees", "minutes", "seconds"})));
    project.GetFeetsFlags(flags);
    formats.Add("Feet format", "feetFormat", Cell::Of(FlagText(flags, {"feet", "inch", "fractions"})));
    int geographic = 0;
    project.GetGeogsDecimals(geographic);
    formats.Add("Geographic decimals", "geographicDecimals", Cell::Count(geographic));
}

void ReportDecimals(Document& document, const ProjectDefinition& project) {
    Facts& decimals = document.AddFacts("Decimals", "decimals");
    for (const DecimalsRow& row : kDecimals) {
        int count = 0;
        (project.*row.getter)(count);
        decimals.Add(std::string(row.label), std::string(row.name), Cell::Count(count));
    }
}

void ReportUnits(Document& document, const ProjectDefinition& project) {
    Table& table = document.AddTable("Units", "units",
                                     {{"Kind", "kind", true},
                                      {"Quantity", "quantity"},
                                      {"Unit", "unit"},
                                      {"Symbol", "symbol"},
                                      {"Internal units", "factor", true},
                                      {"Decimals", "decimals", true}});
    const COrvUnitCnv& units = *project.GetUnitCnv();
    for (int kind = 0; kind < kUnitKinds; ++kind) {
        const std::wstring_view quantity = UnitKindNames()[static_cast<std::size_t>(kind)];
        std::wstring unit = units.GetUnitName(kind);
        if (kind == 0) project.GetItem(UNITS_SECTION, quantity, unit);
        Cell decimals = Cell::Of(std::string("-"));
        decimals.value = nullptr;
        if (int count = 0; project.GetUnitDecimals(kind, count)) decimals = Cell::Count(count);
        Cell factor = Cell::Of(std::string("-"));
        factor.value = nullptr;
        if (kind > 0) factor = {ToUtf8(ShortestText(units.GetFactor(kind))), units.GetFactor(kind), {}};
        table.Add({Cell::Count(kind), Cell::Of(quantity), Cell::OrMissing(unit, "the project names none"),
                   Cell::Of(units.GetUnitMnem(kind)), factor, decimals});
    }
}

std::string GeographicText(const ProjectDefinition& project, double degrees, bool latitude) {
    unsigned flags = 0;
    int decimals = 0;
    project.GetGeogsFlags(flags);
    project.GetGeogsDecimals(decimals);
    return AngleText(degrees, latitude ? Angle::Latitude : Angle::Longitude, flags, decimals);
}

}  // namespace orv::cfg
