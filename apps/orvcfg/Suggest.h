#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cfg {

/// A sentence that offers the known names nearest to one that isn't known; empty if none is near.
std::string DidYouMean(std::wstring_view name, const std::vector<std::wstring>& known);

}  // namespace orv::cfg
