#pragma once

#include <string>
#include <vector>

namespace orv::cfg {

struct GridFinding {
    enum State { Good, Warning, Bad } state;  ///< with a warning it works, if not everywhere
    std::string file, words;
};

/// How a grid keeps what its header promises. `surely`: it is a grid, or is meant to be one; else a file of another
/// kind is nobody's business, and gives nothing.
std::vector<GridFinding> CheckGridFile(const std::wstring& path, bool surely);
/// The fixed files that a model lacks of those it needs, when some are there. None at all is a model that isn't used.
std::vector<GridFinding> CheckGridSet(unsigned short typeId, const std::wstring& folder,
                                      const std::vector<std::wstring>& there);

}  // namespace orv::cfg
