#include <map>

#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "ProfileSurvey.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/SvpFile.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> files;
};

/// Lines of the items Point(n) of a file, by n. The library keeps no line numbers; UTF-16 files have none here.
std::map<int, std::size_t> LinesOfPoints(const std::wstring& path) {
    std::map<int, std::size_t> lines;
    std::string bytes;
    if (ReadWholeFile(path, bytes) != FsResult::Ok) return lines;
    bool inPoints = false;
    std::size_t number = 0;
    for (std::string_view rest = bytes; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        ++number;
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        constexpr std::string_view key = "Point(";
        if (line.starts_with('[')) inPoints = line.starts_with("[POINTS]");
        if (!inPoints || !line.starts_with(key)) continue;
        const std::size_t close = line.find(')');
        if (close == line.npos) continue;
        if (const auto n = ParseInt(line.substr(key.size(), close - key.size()))) lines[*n] = number;
    }
    return lines;
}

ExitCode CheckFiles(Session& session, const Arguments& arguments) {
    ExitCode code = kAllGood;
    Json all = Json::array();
    session.progress.Expect("profiles", arguments.files.size());
    for (const std::string& name : arguments.files) {
        const Progress::Item counted(session.progress);
        const std::wstring path = PathArgument(name);
        ProtectedFileObject file;
        if (!OpenConfigFile(session, path, file)) {
            code = kSomeFailed;
            all.push_back({{"file", name}, {"samples", nullptr}, {"reason", "can't be read"}});
            continue;
        }
        SvpFile profile;
        profile.FileOpen(file);
        const std::vector<ProfileFinding> found = CheckProfile(file, profile);
        const std::map<int, std::size_t> lines = LinesOfPoints(path);
        Json findings = Json::array();
        for (const ProfileFinding& finding : found) {
            const auto line = lines.find(finding.point);
            const bool known = line != lines.end();
            session.Problem(known ? name + ":" + std::to_string(line->second) : name, finding.Text(), finding.remedy);
            findings.push_back({{"line", known ? Json(line->second) : Json(nullptr)},
                                {"point", finding.point > 0 ? Json(finding.point) : Json(nullptr)},
                                {"what", finding.what},
                                {"remedy", finding.remedy}});
        }
        if (!found.empty()) code = kSomeFailed;
        const std::size_t count = found.size();
        if (!session.options.json) {
            session.out.Put(name + ": " + std::to_string(profile.GetNumPoints()) + " samples, " +
                            (count == 0 ? "nothing wrong" : std::to_string(count) + " found") + "\n");
        }
        all.push_back({{"file", name}, {"samples", profile.GetNumPoints()}, {"findings", std::move(findings)}});
    }
    if (session.options.json) PrintJson(session, all);
    return code;
}

}  // namespace

void AddSvpCheck(CLI::App& svp, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(svp, "check", "Look for what can't be right in profiles",
                   "  orvcfg svp check *.svp\n"
                   "  orvcfg svp check: b.svp:7: Point(5): Wrong order: -3 m comes after -3.5 m. ...\n\n"
                   "Finds depths that stand twice, run upwards or lie above the surface, velocities\n"
                   "(with the offset) outside 1400 to 1600 m/s, values that are no numbers, and samples\n"
                   "behind a gap in the numbering. The exit code is 1 if there is any.");
    command->add_option("FILE", arguments->files, "Profiles")->required();
    OnRun(command, session, arguments, CheckFiles);
}

}  // namespace orv::cfg
