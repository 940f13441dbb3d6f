#include <algorithm>

#include "../GeoidChoice.h"
#include "../GridCheck.h"
#include "../ProjectReport.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

/// The model that the project reduces heights by; none if a person or a receiver gives separations, or nobody.
std::optional<GeoidChoice> ModelOf(Examination& examination) {
    if (examination.projectTrouble) return std::nullopt;
    GeoidChoice choice = GeoidInForce(examination.Project());
    if (choice.key.empty() || choice.key == GeoidKey(0) || choice.key == GeoidKey(1)) return std::nullopt;
    return choice;
}

std::vector<GridFinding> GridsOf(const GeoidChoice& choice) {
    const OpenedGeoid opened = OpenGeoid(choice);
    std::vector<GridFinding> found;
    if (!opened.path.empty() && FileExists(opened.path)) found = CheckGridFile(opened.path, true);
    const int type = GeoidTypeForKey(choice.key);
    if (type < 0) return found;
    const auto id = static_cast<unsigned short>(type);
    // A model with a file of the user's choice has no set of files that belong together.
    const auto names = choice.file.empty() ? GeoidGridNames(id) : std::nullopt;
    if (names) {
        const std::vector<GridFinding> lacking = CheckGridSet(id, GeoidModelFolder(id), *names);
        found.insert(found.end(), lacking.begin(), lacking.end());
    }
    return found;
}

void TellGrids(Examination& examination, GridFinding::State state) {
    const auto choice = ModelOf(examination);
    if (!choice) return;
    for (const GridFinding& finding : GridsOf(*choice)) {
        if (finding.state != state || examination.WasTold(finding.file)) continue;
        examination.Tell(finding.file, finding.words, "Get the file again from its publisher: \"orvcfg geoid add\".");
    }
}

}  // namespace

void LookAtGeoid(Examination& examination) {
    TellGrids(examination, GridFinding::Bad);
    const auto choice = ModelOf(examination);
    if (!choice) return;
    const OpenedGeoid opened = OpenGeoid(*choice);
    const std::string file = PathToBytes(opened.path.empty() ? examination.projectFile : opened.path);
    if (opened.problem.empty() || examination.WasTold(file)) return;
    examination.Tell(file, "Geoid model " + ToUtf8(choice->key) + " of the project: " + opened.problem,
                     "Get the grid from the agency that publishes it, and put it there with \"orvcfg geoid add\".");
}

void LookAtGrids(Examination& examination) {
    TellGrids(examination, GridFinding::Warning);
}

}  // namespace orv::cfg
