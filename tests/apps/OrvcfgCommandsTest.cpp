#include <array>
#include <cstdio>
#include <functional>

#include "apps/RunProgram.h"

namespace orv::test {
namespace {

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += " " + word;
    return text;
}

/// Names below "Subcommands:" in a help.
std::vector<std::string> Subcommands(const std::string& help) {
    std::vector<std::string> names;
    bool listed = false;
    for (const std::string& line : Lines(help)) {
        if (listed && line.starts_with("  ") && line[2] != ' ') names.push_back(line.substr(2, line.find(' ', 2) - 2));
        if (!line.starts_with("  ")) listed = line == "Subcommands:";
    }
    return names;
}

class OrvcfgCommands : public OrvcfgTest {
protected:
    void Walk(const Arguments& path,
              const std::function<void(const Arguments&, const std::string& help)>& visit) const {
        Arguments asked = path;
        asked.push_back("--help");
        const RunResult help = Run(asked);
        EXPECT_EQ(help.code, 0) << Joined(path) << help.err;
        visit(path, help.out);
        for (const std::string& name : Subcommands(help.out)) {
            Arguments below = path;
            below.push_back(name);
            Walk(below, visit);
        }
    }

    /// What bash would offer for the last word of a line: words, or the kind of file name that it is told to complete.
    std::string Offered(const std::string& line) const {
        const std::string script = "source '" + Text(L"c") + "'; compopt() { echo \"$2\"; }; COMP_WORDS=(" + line +
                                   "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _orvcfg; echo \"${COMPREPLY[@]}\"";
        WriteBytes(At(L"ask"), script);
        std::string said;
        FILE* shell = popen(("bash -u " + Text(L"ask") + " 2>&1").c_str(), "r");
        if (!shell) return "no bash";
        for (int c = fgetc(shell); c != EOF; c = fgetc(shell)) said += c == '\n' ? ' ' : static_cast<char>(c);
        pclose(shell);
        return said;
    }
};

TEST_F(OrvcfgCommands, AllKeepTheSameManners) {
    ASSERT_EQ(Run({"man", Text(L"pages")}).code, 0);
    ASSERT_EQ(Run({"completion", "bash"}, {}, "> c").code, 0);
    int leaves = 0;
    Walk({}, [&](const Arguments& path, const std::string& help) {
        const std::string name = Joined(path);
        std::string dashed = "orvcfg" + name;
        for (char& c : dashed) c = c == ' ' ? '-' : c;
        const std::string page = ReadBytes(At(L"pages/" + std::wstring(dashed.begin(), dashed.end()) + L".1"));
        EXPECT_NE(page.find("\n.SH EXIT STATUS\n"), std::string::npos) << dashed;
        const std::vector<std::string> below = Subcommands(help);
        if (!below.empty()) {
            EXPECT_EQ(" " + Offered("orvcfg" + name + " ''"), Joined(below) + " ");
            return;
        }
        ++leaves;
        EXPECT_NE(help.find("\nExample:\n  "), std::string::npos) << name;
        Arguments wrong = path;
        wrong.push_back("--no-such");
        const RunResult refused = Run(wrong);
        EXPECT_EQ(refused.code, 2) << name;
        EXPECT_NE(refused.err.find("orvcfg" + name + ": Unknown option \"--no-such\"."), std::string::npos)
            << refused.err;
        EXPECT_NE(refused.err.find(" See \"orvcfg" + name + " --help\"."), std::string::npos) << refused.err;
        EXPECT_EQ(refused.out, "");
    });
    EXPECT_GT(leaves, 50);
}

TEST_F(OrvcfgCommands, BashIsToldWhatMayFollow) {
    ASSERT_EQ(Run({"completion", "bash"}, {}, "> c").code, 0);
    constexpr std::array<std::array<const char*, 2>, 12> kRows = {{
        {"orvcfg geoid ev", "eval "},
        {"orvcfg --system /srv --json geoid ev", "eval "},  // the value of an option is no subcommand
        {"orvcfg --project geoid pat", "paths "},
        {"orvcfg geoid eval --lon", "--lonlat "},
        {"orvcfg geoid eval --sys", "--system "},
        {"orvcfg --system ''", "dirnames  "},
        {"orvcfg geoid eval --system = /s", "dirnames  "},
        {"orvcfg geoid eval --decimals ''", " "},
        {"orvcfg config get ''", "default  "},
        {"orvcfg config get Project.prj ''", " "},
        {"orvcfg geoid check a.gtx b.gtx ''", "default  "},
        {"orvcfg completion ''", "bash "},
    }};
    for (const auto& [line, offered] : kRows) EXPECT_EQ(Offered(line), offered) << line;
}

}  // namespace
}  // namespace orv::test
