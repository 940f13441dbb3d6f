// Sound velocity profiles: show, reduce and plot. `svp check` is in CommandSvpCheck.cpp.

#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "ProfilePicture.h"
#include "SurveyFiles.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct ShowArguments {
    std::string file;
};

struct ReduceArguments {
    std::string file, output;
};

struct PlotArguments {
    std::string file, output, title;
};

/// Opens a profile that has samples to work on.
bool OpenProfile(Session& session, const std::string& path, ProtectedFileObject& file, SvpFile& profile) {
    if (!OpenConfigFile(session, PathArgument(path), file)) return false;
    profile.FileOpen(file);
    if (profile.GetNumPoints() > 0) return true;
    session.Problem(path, "There is no sample in it",
                    "A profile holds Point(1), Point(2), ... in its section [POINTS].");
    return false;
}

ExitCode Show(Session& session, const ShowArguments& arguments) {
    ProtectedFileObject file;
    SvpFile profile;
    if (!OpenConfigFile(session, PathArgument(arguments.file), file)) return kSomeFailed;
    profile.FileOpen(file);
    const std::vector<SvpPoint> samples = SamplesOf(profile, false);
    const double offset = static_cast<double>(profile.GetSVOffset());
    Document document;
    Facts& facts = document.AddFacts("Sound velocity profile", "profile");
    facts.Add("File", "file", Cell::Path(profile.GetFilename()));
    facts.Add("Samples", "samples", Cell::Count(profile.GetNumPoints()));
    facts.Add("Offset (m/s)", "offset", Cell::Number(offset, 3));
    const bool some = !samples.empty();
    const Cell none = Cell::Missing("there is no sample");
    facts.Add("First depth (m)", "firstDepth", some ? Cell::Number(samples.front().depth, 3) : none);
    facts.Add("Last depth (m)", "lastDepth", some ? Cell::Number(samples.back().depth, 3) : none);
    Table& table = document.AddTable("Samples", "points",
                                     {{"No", "number", true},
                                      {"Depth (m)", "depth", true},
                                      {"Velocity (m/s)", "velocity", true},
                                      {"Corrected (m/s)", "corrected", true},
                                      {"Value 3", "auxValue1", true},
                                      {"Value 4", "auxValue2", true}});
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const SvpPoint& sample = samples[i];
        table.Add({Cell::Count(static_cast<std::int64_t>(i + 1)), Cell::Number(sample.depth, 3),
                   Cell::Number(sample.soundVelocity, 3), Cell::Number(sample.soundVelocity + offset, 3),
                   Cell::Number(sample.auxValue1, 3), Cell::Number(sample.auxValue2, 3)});
    }
    document.Print(session);
    return kAllGood;
}

ExitCode Reduce(Session& session, const ReduceArguments& arguments) {
    ProtectedFileObject file;
    SvpFile profile;
    if (!OpenProfile(session, arguments.file, file, profile)) return kSomeFailed;
    const int before = profile.GetNumPoints();
    profile.ReduceProfile();
    // What the reduction has left alone goes out as it came in.
    if (profile.IsModified() && !profile.FileSave(file)) {
        session.Problem(arguments.file, "The reduced profile can't be put into a file");
        return kSomeFailed;
    }
    const bool toFile = !arguments.output.empty() && arguments.output != "-";
    if (toFile && !file.FileObject::FileSave(PathArgument(arguments.output), kSave)) {
        session.Problem(arguments.output, "Can't be written", "Check that the folder is there and may be written to.");
        return kSomeFailed;
    }
    if (session.options.json) {
        Json object = {{"file", arguments.file}, {"samples", before}, {"reduced", profile.GetNumPoints()}};
        Json& points = object["points"] = Json::array();
        for (const SvpPoint& sample : SamplesOf(profile, false)) {
            points.push_back({sample.depth, sample.soundVelocity, sample.auxValue1, sample.auxValue2});
        }
        PrintJson(session, object);
        return kAllGood;
    }
    if (!toFile) {
        memfile text(textencoding::utf8);
        if (!file.FileObject::FileSave(text)) {
            session.Problem(arguments.file, "The reduced profile can't be written as text");
            return kSomeFailed;
        }
        session.out.Put(text.Bytes());
    }
    session.Note(std::to_string(before) + " samples reduced to " + std::to_string(profile.GetNumPoints()));
    return kAllGood;
}

// ---- plot

ExitCode PlotProfile(Session& session, const PlotArguments& arguments) {
    ProtectedFileObject file;
    SvpFile profile;
    if (!OpenProfile(session, arguments.file, file, profile)) return kSomeFailed;
    return WriteResult(session, arguments.output, DrawProfile(profile, arguments.title)) ? kAllGood : kSomeFailed;
}

}  // namespace

void AddSvp(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "svp", "Sound velocity profiles: show, check, reduce, plot");

    auto show = std::make_shared<ShowArguments>();
    CLI::App* command = AddCommand(*group, "show", "Samples and offset of a profile",
                                   "  orvcfg svp show morning.svp\n  orvcfg svp show morning.svp --json | jq .points");
    command->add_option("FILE", show->file, "Profile")->required();
    OnRun(command, session, show, Show);

    AddSvpCheck(*group, session);

    auto reduce = std::make_shared<ReduceArguments>();
    command = AddCommand(*group, "reduce", "Thin a dense profile to a sample for each band of depth",
                         "  orvcfg svp reduce dense.svp --output thin.svp\n"
                         "  orvcfg: 4120 samples reduced to 61\n\n"
                         "Bands are 1 m wide at the surface, and 5, 10, 20 and 50 m further down. One with four and\n"
                         "more samples becomes one on their median line. The offset plays no part and is kept.");
    command->add_option("FILE", reduce->file, "Profile")->required();
    command->add_option("-o,--output", reduce->output, "File to write; may be the same. Default: standard output")
        ->type_name("FILE");
    OnRun(command, session, reduce, Reduce);

    auto plot = std::make_shared<PlotArguments>();
    command = AddCommand(*group, "plot", "Draw a profile beside its reduction, as SVG",
                         "  orvcfg svp plot dense.svp --output dense.svg\n\n"
                         "Velocities are drawn with the offset of the file.");
    command->add_option("FILE", plot->file, "Profile")->required();
    command->add_option("-o,--output", plot->output, "File to write. Default: standard output")->type_name("FILE");
    command->add_option("--title", plot->title, "Title of the picture")->type_name("TEXT");
    OnRun(command, session, plot, PlotProfile);
}

}  // namespace orv::cfg
