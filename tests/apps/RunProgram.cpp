#include "apps/RunProgram.h"

#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

#include "platform/text/PathText.h"

namespace orv::test {

namespace {

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

RunResult OrvcfgTest::Run(const Arguments& arguments, const std::string& input, const std::string& redirect) const {
    WriteBytes(At(L"stdin"), input);
    std::string command = "cd " + Quoted(Text(L"")) + " && " + Quoted(ORVCFG_PROGRAM);
    for (const std::string& argument : arguments) command += " " + Quoted(argument);
    command += " <stdin 2>stderr " + (redirect.empty() ? ">stdout" : redirect);
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), redirect.empty() ? ReadBytes(At(L"stdout")) : "", ReadBytes(At(L"stderr"))};
}

RunResult OrvcfgTest::OnInstallation(Arguments arguments, const std::string& input) const {
    arguments.insert(arguments.begin(), {"--system", "i/system"});
    return Run(arguments, input);
}

void OrvcfgTest::Install(const std::string& project) const {
    const RunResult made = Run({"init", "i"});
    ASSERT_EQ(made.code, 0) << made.err;
    if (project.empty()) return;
    const RunResult created = OnInstallation(
        {"project", "create", project, "--group", "Netherlands", "--system", "RD New - NAP 2018", "--title", "Häfen"});
    ASSERT_EQ(created.code, 0) << created.err;
}

std::string OrvcfgTest::Text(std::wstring_view name) const {
    return PathToBytes(At(name));
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace orv::test
