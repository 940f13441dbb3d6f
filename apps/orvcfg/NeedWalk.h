#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Installation.h"

namespace orv {
class FileDependencies;
}

namespace orv::cfg {

struct NeededFile {
    std::wstring path;
    int level = 0;
    std::string problem;  ///< why it can't be used; empty if it can
};

/// All that is needed, each file behind the one that needs it, and what was found wrong on the way. Needs an open
/// installation.
class NeedWalk {
public:
    void Add(const std::wstring& path, int level);
    void Add(unsigned type, const std::wstring& name, int level);
    const std::vector<NeededFile>& Nodes() const { return nodes; }
    const std::vector<Trouble>& Troubles() const { return troubles; }  ///< each file once

private:
    void Take(const FileDependencies& files, int level);
    void Tell(const NeededFile& node);

    std::vector<NeededFile> nodes;
    std::vector<Trouble> troubles;
    std::vector<std::wstring> chain;  // from the outermost file to the one that needs the next
    std::set<std::wstring> told;
};

/// What the project that has been read needs; `path` is its file.
void AddProjectNeeds(NeedWalk& walk, const std::wstring& path);
/// The grid that the project's heights come from; none if it names none.
std::optional<std::wstring> GridOf(const ProjectDefinition& project);

}  // namespace orv::cfg
