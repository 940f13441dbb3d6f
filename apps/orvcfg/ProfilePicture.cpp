#include "ProfilePicture.h"

#include "Plot.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

std::vector<Svg::Point> CurveOf(const std::vector<SvpPoint>& samples) {
    std::vector<Svg::Point> curve;
    curve.reserve(samples.size());
    for (const SvpPoint& sample : samples) curve.push_back({sample.soundVelocity, sample.depth});
    return curve;
}

}  // namespace

std::vector<SvpPoint> SamplesOf(const SvpFile& profile, bool withOffset) {
    std::vector<SvpPoint> samples(static_cast<std::size_t>(profile.GetNumPoints()));
    for (int index = 0; index < profile.GetNumPoints(); ++index) {
        profile.GetPoint(index, samples[static_cast<std::size_t>(index)], withOffset);
    }
    return samples;
}

std::string DrawProfile(SvpFile profile, const std::string& name, double heightPixels) {
    const std::vector<SvpPoint> samples = SamplesOf(profile, true);
    profile.ReduceProfile();
    const std::vector<SvpPoint> reduced = SamplesOf(profile, true);
    PlotAxis velocity = PlotAxis::Empty("Sound velocity (m/s)"), depth = PlotAxis::Empty("Depth (m, negative below)");
    for (const auto* const list : {&samples, &reduced}) {
        for (const SvpPoint& sample : *list) {
            velocity.Hold(sample.soundVelocity);
            depth.Hold(sample.depth);
        }
    }
    // Both panels have the same axes, so that they can be compared across.
    const std::string title =
        name.empty() ? "Sound velocity profile " + ToUtf8(GetTitleFromPath(profile.GetFilename())) : name;
    Plot plot(title, 1000, heightPixels);
    const std::string measured = "profile", thinned = "reduced";
    PlotPanel& left = plot.AddPanel("Profile, " + std::to_string(samples.size()) + " samples", velocity, depth);
    left.Line(CurveOf(samples), PlotColour::Blue, measured);
    if (samples.size() <= 400) left.Dots(CurveOf(samples), PlotColour::Blue, measured, 1.8);
    PlotPanel& right = plot.AddPanel("Reduced, " + std::to_string(reduced.size()) + " samples", velocity, depth);
    right.Line(CurveOf(samples), PlotColour::Grey, "profile behind its reduction", 1);
    right.Line(CurveOf(reduced), PlotColour::Orange, thinned);
    right.Dots(CurveOf(reduced), PlotColour::Orange, thinned, 3);
    return plot.Text();
}

}  // namespace orv::cfg
