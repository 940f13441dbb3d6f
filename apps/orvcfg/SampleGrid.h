#pragma once

#include <string>
#include <string_view>

namespace orv::cfg {

/// A grid file in the GTX form for trying things out where no real one is at hand: a smooth made-up surface over the
/// Dutch sector of the North Sea, of the size of real separations and of no other worth. Every user must be told so.
std::string SyntheticGtx();

inline constexpr std::wstring_view kSyntheticGridName = L"synthetic-sample-not-for-navigation.gtx";
/// The surface itself, in metres.
double SyntheticSeparation(double latitude, double longitude);

}  // namespace orv::cfg
