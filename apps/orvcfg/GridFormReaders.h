#pragma once

#include <optional>
#include <span>
#include <string>

#include "GridForms.h"

/// A reader for each row of GridForms(). They read headers by themselves: a model tells no more than whether it can use
/// a file, and a file that it can't use is the one that somebody wants to know about.
namespace orv::cfg {

using Content = std::span<const std::byte>;
using FormFacts = std::optional<GridFacts>;

FormFacts ReadGtxFacts(Content bytes, std::string& why);
FormFacts ReadShiftFacts(Content bytes, std::string& why);
FormFacts ReadDsbbFacts(Content bytes, std::string& why);
FormFacts ReadQuasigeoidFacts(Content bytes, std::string& why);
FormFacts ReadBynFacts(Content bytes, std::string& why);
FormFacts ReadGravsoftFacts(Content bytes, std::string& why);
FormFacts ReadGgfFacts(Content bytes, std::string& why);
FormFacts ReadGlobalFacts(Content bytes, std::string& why);
FormFacts ReadGriFacts(Content bytes, std::string& why);
FormFacts ReadKilometreShifts(Content bytes, std::string& why);
FormFacts ReadKilometreHeights(Content bytes, std::string& why);
FormFacts ReadVorfFacts(Content bytes, std::string& why);
FormFacts ReadBelgianHeights(Content bytes, std::string& why);
FormFacts ReadBelgianShifts(Content bytes, std::string& why);
FormFacts ReadDeMinFacts(Content bytes, std::string& why);
FormFacts ReadNz97Facts(Content bytes, std::string& why);

/// True for bounds and steps that a grid on earth can have; else false, and why.
bool OnEarth(const GridPart& part, std::string& why);
/// The fault of a file of `has` bytes that should have `needs`; empty if it has.
std::string LengthFault(std::int64_t nodes, std::uint64_t needs, std::uint64_t has);
/// Says so when a model that counts nodes as extent / step + `added`, cut, loses a row or column of this grid.
void RemarkLostNodes(const GridPart& part, double added, std::string_view models, GridFacts& facts);

}  // namespace orv::cfg
