#include "Session.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/notify/Notices.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr Notice kAllNotices[] = {Notice::Message, Notice::Alert, Notice::ErrorReport, Notice::Information};

}  // namespace

Session::Session(int resultDescriptor) : out(resultDescriptor, progress), colours(ShowsColours(STDERR_FILENO)) {
    for (const Notice kind : kAllNotices) {
        SetNotice(kind, [this](std::wstring_view text) { FromLibrary(text); });
    }
}

Session::~Session() {
    for (const Notice kind : kAllNotices) SetNotice(kind, {});
}

void Session::Say(std::string_view text) {
    std::string line(text);
    line += '\n';
    const auto clear = progress.Clear();
    // Nobody is left to be told when this fails.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

void Session::Problem(std::string_view where, std::string_view what, std::string_view remedy) {
    told = true;
    std::string line = "orvcfg";
    if (!command.empty()) line += " " + command;
    line = Styled(line + ":", Style::Error, colours) + " ";
    if (!where.empty()) line.append(where).append(": ");
    line.append(what);
    if (!what.ends_with('.') && !what.ends_with('?')) line += '.';
    if (!remedy.empty()) line.append(" ").append(remedy);
    out.Flush();  // so that results and problems come in their order where both go to one place
    Say(line);
}

void Session::Note(std::string_view text) {
    if (options.quiet) return;
    out.Flush();
    Say("orvcfg: " + std::string(text));
}

void Session::Detail(std::string_view text) {
    if (options.verbose) Note(text);
}

void Session::FromLibrary(std::wstring_view text) {
    std::string line = "orvcfg: " + ToUtf8(text);
    for (char& c : line) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    if (options.quiet) {
        kept.push_back(std::move(line));
    } else {
        Say(line);
    }
}

ExitCode Session::Run() {
    if (!options.quiet && IsScreen(STDERR_FILENO)) progress.Start("orvcfg " + command);
    const ExitCode code = operation();
    progress.Stop();
    return code;
}

void Session::Await(int descriptor) {
    out.Flush();
    if (isatty(descriptor) == 1) {
        progress.Stop();
    } else {
        progress.Await();
    }
}

ExitCode Session::Finish(ExitCode code) {
    const bool written = out.Flush();
    if (!written && out.Error() != EPIPE) {  // a reader that has seen enough is no news
        Problem({}, std::string("The results can't be written: ") + std::strerror(out.Error()));
    }
    if (code != kAllGood && !told) {
        for (const std::string& line : kept) Say(line);
    }
    if (!written) return kCannotRun;
    return code == kAllGood && told ? kSomeFailed : code;
}

}  // namespace orv::cfg
