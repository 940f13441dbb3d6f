#include "project/FileDependencies.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/text/PathText.h"
#include "project/AppConfig.h"
#include "project/ProjectModel.h"
#include "project/VesselConfig.h"
#include "surveydata/DredgeInstructionModel.h"

namespace orv {

namespace {

using Asked = void (*)(const std::wstring& path, FileDependencies& dependencies);

/// The file types that need other files, and who knows which.
constexpr std::array<std::pair<unsigned, Asked>, 4> kFollowed = {{
    {kFileTypeAppConfig, AppConfig::GetDependencies},
    {kFileTypeDredgeInstruction, DredgeInstructionModel::GetDependencies},
    {kFileTypeVesselConfig, VesselConfig::GetDependencies},
    {kFileTypeProjectFile, ProjectModel::GetDependencies},
}};

Asked WhoKnows(const std::wstring& path) {
    std::wstring folder, name, extension;
    SplitPath(path, folder, name, extension);
    unsigned type = 0;
    if (!DataSearch::GetDataSearch().GetTypeForExtension(L"." + extension, type)) return nullptr;
    const auto known =
        std::find_if(kFollowed.begin(), kFollowed.end(), [&](const auto& row) { return row.first == type; });
    return known == kFollowed.end() ? nullptr : known->second;
}

}  // namespace

void FileDependencies::Add(const std::wstring& path) {
    if (path.empty()) return;
    if (files.size() >= kMaxFiles) {
        complete = false;
        return;
    }
    files.push_back({path, static_cast<int>(chain.size())});
    Follow(path);
}

bool FileDependencies::Add(unsigned type, const std::wstring& file) {
    if (file.empty()) return false;
    std::wstring path = file;
    if (!DataSearch::GetDataSearch().GetFullPath(type, path)) {
        if (unresolved.size() < kMaxFiles)
            unresolved.push_back({GetSize(), static_cast<int>(chain.size()), type, file});
        return false;
    }
    Add(path);
    return true;
}

// A model may list itself, or two may list each other: a file on the way down isn't opened again, but it is listed.
void FileDependencies::Follow(const std::wstring& path) {
    if (std::find(chain.begin(), chain.end(), path) != chain.end()) return;
    const Asked ask = WhoKnows(path);
    if (!ask) return;
    if (chain.size() >= kMaxLevels || followed >= kMaxFollowed) {
        complete = false;
        return;
    }
    ++followed;
    chain.push_back(path);
    ask(path, *this);
    chain.pop_back();
}

const FileDependencies::Entry& FileDependencies::At(int index) const {
    if (index < 0 || index >= GetSize()) throw std::invalid_argument("no such file in the list of dependencies");
    return files[static_cast<std::size_t>(index)];
}

std::wstring FileDependencies::operator[](int index) const {
    return At(index).path;
}

int FileDependencies::GetLevel(int index) const {
    return At(index).level;
}

}  // namespace orv
