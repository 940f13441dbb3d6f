#include "ProfileSurvey.h"

#include <cmath>
#include <map>
#include <optional>

#include "core/COrvString.h"
#include "core/FileObject.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "surveydata/SvpFile.h"

namespace orv::cfg {

namespace {

constexpr double kSlowest = 1400, kFastest = 1600;  // m/s, from fresh water at 0 degrees to a warm brine under pressure
constexpr int kFields = 4;

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
    std::vector<ProfileFinding> Findings() { return std::move(findings); }

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

    std::vector<ProfileFinding> findings;
    std::map<double, int> depths;  ///< with the first sample that has it
    double previous = 0;
    int number = 0, positive = 0;
};

}  // namespace

std::vector<ProfileFinding> CheckProfile(const FileObject& file, const SvpFile& profile) {
    return Check(file, profile).Findings();
}

}  // namespace orv::cfg
