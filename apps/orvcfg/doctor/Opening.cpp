#include "../NeedWalk.h"
#include "../Session.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

void LookAtInstallation(Examination& examination) {
    const std::wstring definition = AppDefFile(TextArgument(examination.session.options.appDef));
    if (examination.installationTrouble) {
        // A definition that doesn't verify has been told of as what it is.
        if (!examination.WasTold(PathToBytes(definition))) examination.Tell(*examination.installationTrouble);
    } else if (!FileExists(definition)) {
        examination.Tell(PathToBytes(definition), "The application definition isn't there: no file type is supported",
                         "Put it back, or name another with --app-def.");
    }
}

void LookAtProject(Examination& examination) {
    FileObject file;  // as it lies: opening it converts it in memory
    if (file.FileOpen(examination.projectFile, kOpenRead) && file.HasKey(COORDSYSTEM_SECTION, OLD_GEOID_MODE)) {
        examination.Tell(PathToBytes(examination.projectFile),
                         "Heights are in an older form, which the next application converts without asking",
                         "\"orvcfg project upgrade --plan\" tells what becomes of them; without --plan it does it, and "
                         "keeps copies.");
        return;
    }
    if (examination.projectTrouble) examination.Tell(*examination.projectTrouble);
}

void LookAtNeededFiles(Examination& examination) {
    const auto grid = GridOf(examination.Project());
    NeedWalk walk;
    AddProjectNeeds(walk, examination.projectFile);
    for (const Trouble& trouble : walk.Troubles()) {
        // Grids, and what keeps installation or project from opening, have checks of their own.
        if (grid && trouble.where == PathToBytes(*grid)) continue;
        if (!examination.WasTold(trouble.where)) examination.Tell(trouble);
    }
}

}  // namespace orv::cfg
