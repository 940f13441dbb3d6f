#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace orv::test {

struct RunResult {
    int code = -1;  ///< as a shell shows it
    std::string out, err;
    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

/// A temporary folder with programs run in it, and an installation made by the program itself.
class OrvcfgTest : public testing::Test {
protected:
    using Arguments = std::vector<std::string>;

    /// Runs orvcfg. `redirect` may send its output elsewhere, as a shell writes it.
    RunResult Run(const Arguments& arguments, const std::string& input = {}, const std::string& redirect = {}) const;
    /// The same with the installation's system folder in front.
    RunResult OnInstallation(Arguments arguments, const std::string& input = {}) const;
    /// `init` and, if a name is given, a project on the Dutch grid.
    void Install(const std::string& project = {}) const;

    std::wstring At(std::wstring_view name) const { return folder / name; }
    std::string Text(std::wstring_view name) const;  ///< path of a file in the folder, for an argument
    std::wstring ProjectFile() const { return At(L"i/Projects/Harbour/Project.prj"); }
    std::wstring GridFolder() const { return At(L"i/General/GeoidModels/Netherlands/"); }

    TempFolder folder;
};

std::vector<std::string> Lines(const std::string& text);

}  // namespace orv::test
