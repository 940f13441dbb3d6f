#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Output.h"
#include "Progress.h"

namespace orv::cfg {

enum ExitCode : int {
    kAllGood = 0,
    kSomeFailed = 1,  ///< some input couldn't be dealt with; the rest was
    kCannotRun = 2,   ///< wrong usage, no installation to work on, or the results couldn't be written
};

/// What stands in front of, or behind, every subcommand.
struct Options {
    std::string systemFolder, project, projectsRoot, common;
    std::string appDef = "navigate";
    bool userDef = false, json = false, quiet = false, verbose = false;
};

/// One run of the program: its options, where results go, and what is said beside them. Texts are UTF-8; file names are
/// the bytes that the system knows them by.
class Session {
public:
    explicit Session(int resultDescriptor);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Options options;
    Progress progress;
    Output out;
    std::string command;                  ///< names of the subcommand, for instance "geoid eval"
    std::function<ExitCode()> operation;  ///< what the arguments ask for

    /// Tells why something failed and what to do about it; `where` is a file, with its line if it is known, or empty.
    void Problem(std::string_view where, std::string_view what, std::string_view remedy = {});
    void Note(std::string_view text);    ///< beside the results, unless quiet
    void Detail(std::string_view text);  ///< only when verbose
    /// Runs what the arguments ask for, with its progress where a person looks at it.
    ExitCode Run();
    /// To be called before input may have to be waited for: what is finished goes out, and where a person types,
    /// nothing else happens on the screen.
    void Await(int descriptor);
    /// The exit code that goes with what was told: never `kAllGood` after a problem.
    ExitCode Finish(ExitCode code);

private:
    void Say(std::string_view text);
    void FromLibrary(std::wstring_view text);

    const bool colours;             // on the error output
    bool told = false;              // a problem
    std::vector<std::string> kept;  // notices of the library held back by --quiet
};

}  // namespace orv::cfg
