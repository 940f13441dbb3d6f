#include "GeoidSource.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <limits>

#include "Installation.h"
#include "ProjectReport.h"
#include "Session.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();

}  // namespace

void AddGeoidOptions(CLI::App& command, GeoidArguments& arguments) {
    command.add_option("--model", arguments.model, "Geoid model, by key or type id. Default: the project's own")
        ->type_name("MODEL");
    command.add_option("--file", arguments.file, "Grid file of the model")->type_name("NAME");
    command.add_option("--chart-datum", arguments.chartDatum, "Chart datum of the model")->type_name("NAME");
}

std::optional<GeoidChoice> ChoiceOf(Session& session, const GeoidArguments& arguments) {
    const auto type = GeoidTypeArgument(session, arguments.model);
    if (!type) return std::nullopt;
    return GeoidChoice{GeoidKey(*type), PathArgument(arguments.file), TextArgument(arguments.chartDatum)};
}

bool GeoidSource::Open(Session& session, const GeoidArguments& arguments) {
    if (arguments.model.empty()) return OpenOfProject(session, arguments);
    const std::optional<GeoidChoice> choice = ChoiceOf(session, arguments);
    return choice && OpenChoice(session, *choice);
}

bool GeoidSource::OpenOfProject(Session& session, const GeoidArguments& arguments) {
    if (!arguments.file.empty() || !arguments.chartDatum.empty()) {
        session.Problem({}, "--file and --chart-datum go with --model",
                        "Without --model the project's own geoid is taken.");
        return false;
    }
    if (!OpenProject(session)) return false;
    ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    const GeoidChoice own = GeoidInForce(project);
    if (own.key.empty()) {
        session.Problem(PathToBytes(project.GetFileName()), "The project has no geoid model",
                        "Name one with --model; \"orvcfg geoid list\" shows them.");
        return false;
    }
    coordSys = project.GetGeoCoordSys();
    double factor = 1.0;
    coordSys->Unit(factor, unit);
    return OpenChoice(session, own);
}

bool GeoidSource::OpenChoice(Session& session, const GeoidChoice& choice) {
    // Separations that a person or a receiver gives have no model.
    const bool given = choice.key == GeoidKey(0) || choice.key == GeoidKey(1);
    if (!given) geoid = OpenGeoid(choice);
    if (!geoid.problem.empty()) {
        session.Problem({}, "Geoid model " + ToUtf8(choice.key) + ": " + geoid.problem,
                        choice.file.empty() ? "Give --file; \"orvcfg geoid list\" shows the grids that are there."
                                            : "\"orvcfg geoid add\" puts a grid there.");
        return false;
    }
    session.Detail("geoid model " + ToUtf8(choice.key) +
                   (geoid.path.empty() ? "" : ", file " + PathToBytes(geoid.path)) + ", unit " + ToUtf8(unit));
    return true;
}

bool GeoidSource::AskModel(double latitude, double longitude, double easting, double northing, double& value) {
    remark.clear();
    if (geoid.model->Calculate(latitude, longitude, easting, northing, value, remark)) return true;
    reason = ToUtf8(GeoidReasonText(geoid.model->LastReason()));
    return false;
}

bool GeoidSource::At(double latitude, double longitude, double& value) {
    bool found = false;
    if (coordSys) {
        found = coordSys->HeightSeparation(latitude, longitude, value, words);
        if (!found) reason = ShortReason(geoid, latitude, longitude, words);
    } else {
        found = AskModel(latitude, longitude, kNowhere, kNowhere, value);
    }
    if (!found || std::isfinite(value)) return found;
    reason = "the model's value is no number";
    return false;
}

bool GeoidSource::AtGrid(double easting, double northing, double& value) {
    return AskModel(kNowhere, kNowhere, easting, northing, value);
}

}  // namespace orv::cfg
