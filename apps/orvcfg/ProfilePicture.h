#pragma once

#include <string>
#include <vector>

#include "surveydata/SvpFile.h"

namespace orv::cfg {

std::vector<SvpPoint> SamplesOf(const SvpFile& profile, bool withOffset);
/// An SVG file: the profile, its offset added, beside its reduction. An empty name is made of the file's. The profile
/// has a sample at least.
std::string DrawProfile(SvpFile profile, const std::string& name, double heightPixels = 760);

}  // namespace orv::cfg
