// Who may include whom: down the list only. The few places where objects really know each other are named here.

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "platform/text/PathText.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;

const std::map<std::string, int> kLayers = {{"platform", 0},   {"core", 1},    {"definitions", 2},  {"geoid", 2},
                                            {"surveydata", 2}, {"project", 3}, {"housekeeping", 4}, {"users", 4},
                                            {"frontend", 5},   {"modules", 6}, {"apps", 6}};

// Source, and the folder above that it reaches into.
const std::set<std::pair<std::string, std::string>> kUpward = {
    {"platform/attributes/CAttributeMap.cpp", "core"},     // attributes are items of configuration files
    {"core/DataSearch.cpp", "project"},                    // opens and owns the project
    {"core/DataSearch.cpp", "users"},                      // owns the access levels
    {"core/DataSearch.cpp", "housekeeping"},               // owns the file history, sets up the workers
    {"core/DataSearchPaths.cpp", "project"},               // asks it for log folders
    {"core/DataSearchPaths.cpp", "housekeeping"},          // asks the history for old copies
    {"core/DataSearchRights.cpp", "users"},                // asks the access levels
    {"surveydata/LogFileName.cpp", "project"},             // asks it how logs are named
    {"surveydata/DredgeInstructionModel.cpp", "project"},  // fills its list of files
    {"core/OrvConfigureInitializer.cpp", "definitions"},   // registers its port forms
    {"core/OrvConfigureInitializer.cpp", "geoid"},         // registers its models
};

std::vector<std::string> IncludesOf(const fs::path& file) {
    static const std::regex kInclude("^#include \"([^\"]+)\"");
    std::ifstream in(file);
    std::vector<std::string> includes;
    std::smatch match;
    for (std::string line; std::getline(in, line);) {
        if (std::regex_search(line, match, kInclude)) includes.push_back(match[1]);
    }
    return includes;
}

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.find('/'));
}

template <class Visit>
void ForEachSource(Visit visit) {
    const fs::path root = fs::path(ORV_SOURCE_DIR) / "src";
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string ending = entry.path().extension();
        if (ending == ".h" || ending == ".cpp") visit(entry.path(), fs::relative(entry.path(), root).generic_string());
    }
}

TEST(House, IncludesPointDown) {
    std::set<std::pair<std::string, std::string>> unused = kUpward;
    ForEachSource([&](const fs::path& file, const std::string& name) {
        const int layer = kLayers.at(FolderOf(name));
        for (const std::string& include : IncludesOf(file)) {
            const std::string folder = FolderOf(include);
            if (folder == FolderOf(name) || !kLayers.count(folder)) continue;
            if (kLayers.at(folder) < layer) continue;
            EXPECT_EQ(kUpward.count({name, folder}), 1u) << name << " includes " << include;
            unused.erase({name, folder});
        }
    });
    for (const auto& [name, folder] : unused) ADD_FAILURE() << name << " no longer includes " << folder;
}

// So each header is compiled once with nothing before it.
TEST(House, SourcesIncludeTheirHeaderFirst) {
    ForEachSource([&](const fs::path& file, const std::string& name) {
        if (file.extension() != ".cpp") return;
        fs::path header = file;
        header.replace_extension(".h");
        const std::vector<std::string> includes = IncludesOf(file);
        if (!fs::exists(header)) return;
        ASSERT_FALSE(includes.empty()) << name;
        EXPECT_EQ(includes[0].substr(includes[0].rfind('/') + 1), header.filename().string()) << name;
    });
}

// No text or number leaves through the locale, no file past the file system.
TEST(House, OneWayForEachThing) {
    struct Rule {
        const char* what;
        std::regex pattern;
        std::string allowedIn;
    };
    const std::array<Rule, 3> rules = {{
        {"number text by the locale",
         std::regex("\\b(strto[dlf]|wcsto[dl]|stod|stof|atof|swprintf|snprintf|sscanf)\\b"), "-"},
        {"a file past the file system", std::regex("\\b(fopen|std::[io]fstream|std::filesystem)\\b"), "platform/os/"},
        {"case by the locale", std::regex("\\b(towlower|tolower|toupper)\\("), "platform/text/CaseFold"},
    }};
    ForEachSource([&](const fs::path& file, const std::string& name) {
        std::ifstream in(file);
        for (std::string line; std::getline(in, line);) {
            line.resize(std::min(line.size(), line.find("//")));
            for (const Rule& rule : rules) {
                if (name.rfind(rule.allowedIn, 0) == 0) continue;
                EXPECT_FALSE(std::regex_search(line, rule.pattern)) << rule.what << " in " << name << ": " << line;
            }
        }
    });
}

// The page of code that a reader copies is the one that the tests build and run.
TEST(House, ReadmeQuotesTheExample) {
    const std::string example = orv::test::ReadBytes(orv::PathFromBytes(ORV_SOURCE_DIR) + L"/examples/host/host.cpp");
    const std::string readme = orv::test::ReadBytes(orv::PathFromBytes(ORV_SOURCE_DIR) + L"/README.md");
    EXPECT_FALSE(example.empty());
    EXPECT_NE(readme.find(example), std::string::npos);
}

}  // namespace
