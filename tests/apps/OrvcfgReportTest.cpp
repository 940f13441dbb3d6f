#include <regex>

#include "apps/RunProgram.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::test {
namespace {

using std::string;

/// Why a page isn't one that every browser reads alike and that asks for nothing from outside; empty if it is.
string FaultOf(string page) {
    std::smatch match;
    if (std::regex_search(page, match, std::regex("<style>[^<]*</style>"))) {
        const string style = match.str();
        if (style.find("url(") != style.npos || style.find("@import") != style.npos) return "the style loads something";
        page.erase(static_cast<std::size_t>(match.position()), style.size());
    }
    if (!page.starts_with("<!DOCTYPE html>\n<html")) return "it doesn't start as a page";
    page.erase(0, page.find('\n'));
    std::vector<string> open;
    const std::regex tag("^<(/?)([a-z][a-zA-Z0-9]*)((?: [a-zA-Z][a-zA-Z0-9-]*=\"[^\"<>]*\")*)(/?)>");
    const std::regex outside(" (src|srcset|data|action|on[a-z]+|style|xlink:href)=| href=\"(?!#[a-z]+\")");
    for (std::size_t at = 0; at < page.size();) {
        if (page[at] == '&') {
            if (!std::regex_search(page.substr(at, 8), std::regex("^&(amp|lt|gt|quot);"))) return "a bare ampersand";
        } else if (page[at] == '>' || page[at] == '"') {
            // Quotes may stand in a text; here they come escaped like the rest.
            return "a bare " + string(1, page[at]) + " in " + page.substr(at - std::min<std::size_t>(at, 40), 60);
        } else if (page[at] == '<') {
            const string rest = page.substr(at, page.find('>', at) + 1 - at);
            if (!std::regex_search(rest, match, tag)) return "no tag: " + rest;
            if (std::regex_search(rest, outside)) return "asks for something: " + rest;
            const string name = match[2];
            for (const char* never : {"script", "link", "iframe", "object", "img", "image", "use"}) {
                if (name == never) return "element " + name;
            }
            if (match[1] == "/") {
                if (open.empty() || open.back() != name) return "closes another element: " + rest;
                open.pop_back();
            } else if (match[4] != "/") {
                open.push_back(name);
            }
            at += rest.size();
            continue;
        }
        ++at;
    }
    return open.empty() ? "" : "never closed: " + open.back();
}

class OrvcfgReportTest : public OrvcfgTest {
protected:
    void SetUp() override {
        setenv("TMPDIR", Text(L"").c_str(), 1);
        root = Run({"demo", "--keep", "--json"}).Json()["sample"]["folder"];
    }
    void TearDown() override { unsetenv("TMPDIR"); }
    RunResult Ask(Arguments arguments) const {
        arguments.insert(arguments.begin(), {"--system", root + "system"});
        return Run(arguments);
    }
    string root;
};

TEST_F(OrvcfgReportTest, AnyNameIsOnlyAName) {
    EXPECT_NE(FaultOf("<!DOCTYPE html>\n<html><p></html></p>"), "");
    EXPECT_NE(FaultOf("<!DOCTYPE html>\n<html><p>&b</p></html>"), "");
    EXPECT_NE(FaultOf("<!DOCTYPE html>\n<html><a href=\"http://x\">x</a></html>"), "");
    const string hostile = "</svg><b>&\"'<script>alert(1)</script>", shown = "&lt;b&gt;&amp;&quot;'";
    const string project = root + "Projects/Maasvlakte/", vessel = project + "Sounder[navigate].vcf";
    const std::tuple<string, const char*, const char*, string> rows[] = {
        {project + "Project.prj", "Header", "ProjectName", hostile},
        {project + "Project.prj", "Application", "Definition", "<i>&"},
        {vessel, "DEVICE(5)", "UserName", hostile},
        {vessel, "DEVICE(6)", "PortName", hostile},
        {vessel, "GEOMETRY", "Offset(2)", hostile + ",1e300,nan,-0"},
        {vessel, "GEOMETRY", "Offset(3)", hostile + ",1,2,3"},
        {root + "system/InterfaceDefinition.ini", "COM1", "Handler", hostile}};
    for (const auto& [file, section, key, value] : rows) {
        ASSERT_EQ(Ask({"config", "set", "--accept", file, section, key, value}).code, 0) << key;
    }
    WriteBytes(PathFromBytes(project + "a&b<i>\xFF.svp"), "[POINTS]\nPoint(1)=-1,1500,0,0\nPoint(2)=-2,inf,0,0\n");
    WriteBytes(PathFromBytes(project + "x\"y.tdg"), "");
    const RunResult run = Ask({"report", "Maasvlakte"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(FaultOf(run.out), "");
    EXPECT_TRUE(IsUtf8(run.out));
    std::size_t count = 0;
    for (std::size_t at = 0; (at = run.out.find(shown, at)) != string::npos; ++at) ++count;
    EXPECT_GT(count, 6u);
    EXPECT_NE(run.out.find("class=\"finding error\""), string::npos);
}

TEST_F(OrvcfgReportTest, TellsWhatThereIsAndFailsAsItShould) {
    const RunResult sound = Ask({"report", "-o", "page.html", "--json"});
    EXPECT_EQ(sound.code, 0) << sound.err;
    EXPECT_EQ(sound.Json()["errors"], 0);
    const string page = ReadBytes(At(L"page.html"));
    for (const char* part : {"Nothing wrong", "SHA-256", "Sounder from above", "3  Bow antenna", "UDP 5002", "Maasmond",
                             "Profile, 109 samples", "Free on the disk"}) {
        EXPECT_NE(page.find(part), string::npos) << part;
    }
    EXPECT_EQ(Ask({"report", "-o", "none/page.html"}).code, 1);
    EXPECT_EQ(Ask({"report", "Nowhere"}).code, 2);
    WriteBytes(PathFromBytes(root + "Projects/Maasvlakte/Project.prj"), "");
    const RunResult closed = Ask({"report"});
    EXPECT_EQ(closed.code, 1);
    EXPECT_EQ(FaultOf(closed.out), "");
    EXPECT_NE(closed.err.find("The page lacks"), string::npos) << closed.err;
    EXPECT_EQ(ReadBytes(PathFromBytes(root + "Projects/Maasvlakte/Project.prj")), "");
}

}  // namespace
}  // namespace orv::test
