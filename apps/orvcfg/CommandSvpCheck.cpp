#include <cmath>
#include <map>

#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "core/COrvString.h"
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

constexpr double kSlowest = 1400, kFastest = 1600;  // m/s, from fresh water at 0 degrees to a warm brine under pressure
constexpr int kFields = 4;

struct Finding {
    int point;  ///< from 1; 0 for the file as a whole
    std::string what, remedy;
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

class Check {
public:
    Check(const FileObject& file, const SvpFile& profile) {
        const double offset = static_cast<double>(profile.GetSVOffset());
        if (!std::isfinite(offset)) Tell(0, "The offset is no number", "Correct SVOffset in [OFFSET].");
        for (int index = 0; index < profile.GetNumPoints(); ++index) {
            number = index + 1;
            if (!Fields(file)) continue;
            SvpPoint sample;
            profile.GetPoint(index, sample, false);
            Depth(sample.depth);
            Velocity(sample.soundVelocity, offset);
        }
        Behind(file, profile.GetNumPoints());
        if (positive > 0 && positive == profile.GetNumPoints()) {
            Tell(0, "All depths are positive, so the whole profile lies above the surface",
                 "If depths were written downwards, put a minus in front of each.");
        }
    }
    const std::vector<Finding>& Findings() const { return findings; }

private:
    static std::wstring Key(int point) { return L"Point(" + IntText(point) + L")"; }
    static std::string Metres(double value) { return ToUtf8(ShortestText(value)) + " m"; }

    void Tell(int point, std::string what, std::string remedy) {
        findings.push_back({point, std::move(what), std::move(remedy)});
    }

    /// What is missing or no number reads as 0, which is neither a depth nor a velocity that anybody has measured.
    bool Fields(const FileObject& file) {
        std::wstring text;
        file.GetItem(L"POINTS", Key(number), text);
        const COrvString items(text, L',', false);
        bool good = items.Size() == kFields;
        for (int i = 0; i < items.Size(); ++i) {
            const std::optional<double> value = ParseDouble(items[i]);
            good = good && value && std::isfinite(*value);
        }
        if (!good) {
            Tell(number, "\"" + ToUtf8(text) + "\" isn't four numbers",
                 "A sample is depth, velocity and two further values.");
        }
        return good;
    }

    void Depth(double depth) {
        if (depth > 0) {
            ++positive;
            Tell(number, "The depth " + Metres(depth) + " has the wrong sign, it lies above the surface",
                 "Depths are negative below the surface.");
        }
        const auto [first, isNew] = depths.emplace(depth, number);
        if (!isNew) {
            Tell(number,
                 "The depth " + Metres(depth) + " stands in Point(" + std::to_string(first->second) + ") already",
                 "Remove one of the two.");
        } else if (depths.size() > 1 && depth > previous) {
            Tell(number, "Wrong order: " + Metres(depth) + " comes after " + Metres(previous),
                 "Samples run from the surface down.");
        }
        previous = depth;
    }

    void Velocity(double velocity, double offset) {
        const double corrected = velocity + offset;
        if (corrected >= kSlowest && corrected <= kFastest) return;
        std::string what = "The velocity " + ToUtf8(ShortestText(velocity)) + " m/s";
        if (offset != 0) what += ", " + ToUtf8(ShortestText(corrected)) + " m/s with the offset,";
        Tell(number, what + " isn't between 1400 and 1600 m/s", "Correct or remove the sample.");
    }

    /// A number that is missing ends the list: what stands behind it is never read.
    void Behind(const FileObject& file, int count) {
        FobjSection cursor;
        std::wstring section, key, value;
        if (count == 0) Tell(0, "There is no sample in it", "A profile starts with Point(1) in its section [POINTS].");
        for (bool more = file.GetFirstSectionEntry(cursor, section); more;
             more = file.GetNextSectionEntry(cursor, section)) {
            if (section != L"POINTS") continue;
            for (bool item = file.GetFirstMapEntry(cursor, section, key, value); item;
                 item = file.GetNextMapEntry(cursor, key, value)) {
                const int point = key.starts_with(L"Point(") ? ParseLeadingInt(key.substr(6)) : 0;
                if (point <= count || key != Key(point)) continue;
                Tell(point,
                     "Point(" + std::to_string(point) + ") is never read, as Point(" + std::to_string(count + 1) +
                         ") is missing",
                     "Number the samples from 1 without gaps.");
            }
            return;
        }
    }

    std::vector<Finding> findings;
    std::map<double, int> depths;  ///< with the first sample that has it
    double previous = 0;
    int number = 0, positive = 0;
};

ExitCode CheckFiles(Session& session, const Arguments& arguments) {
    ExitCode code = kAllGood;
    Json all = Json::array();
    for (const std::string& name : arguments.files) {
        const std::wstring path = PathArgument(name);
        ProtectedFileObject file;
        if (!OpenConfigFile(session, path, file)) {
            code = kSomeFailed;
            all.push_back({{"file", name}, {"samples", nullptr}, {"reason", "can't be read"}});
            continue;
        }
        SvpFile profile;
        profile.FileOpen(file);
        const Check check(file, profile);
        const std::map<int, std::size_t> lines = LinesOfPoints(path);
        Json findings = Json::array();
        for (const Finding& finding : check.Findings()) {
            const auto line = lines.find(finding.point);
            const bool known = line != lines.end();
            const std::string point = finding.point > 0 ? "Point(" + std::to_string(finding.point) + "): " : "";
            session.Problem(known ? name + ":" + std::to_string(line->second) : name, point + finding.what,
                            finding.remedy);
            findings.push_back({{"line", known ? Json(line->second) : Json(nullptr)},
                                {"point", finding.point > 0 ? Json(finding.point) : Json(nullptr)},
                                {"what", finding.what},
                                {"remedy", finding.remedy}});
        }
        if (!check.Findings().empty()) code = kSomeFailed;
        const std::size_t count = check.Findings().size();
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
