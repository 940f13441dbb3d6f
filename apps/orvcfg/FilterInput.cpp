#include "FilterInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "LineReader.h"
#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

namespace {

using std::chrono::steady_clock;

// Short runs show nothing; long ones four times a second.
constexpr std::chrono::milliseconds kPatience{1000}, kBetween{250};

void PutOnTerminal(const std::string& text) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

Progress::Progress(const Session& session, std::uint64_t toCome)
    : shown(!session.options.quiet && isatty(STDERR_FILENO) == 1 && !session.out.IsTerminal()),
      total(toCome),
      next(steady_clock::now() + kPatience) {}

Progress::~Progress() {
    if (drawn) PutOnTerminal("\r\033[K");
}

void Progress::Show() {
    const auto now = steady_clock::now();
    if (now < next) return;
    next = now + kBetween;
    drawn = true;
    std::string text = "\r\033[K" + std::to_string(lines) + " lines";
    if (total > 0) text += ", " + std::to_string(done * 100 / total) + " %";
    PutOnTerminal(text);
}

bool FilterInput(Session& session, int descriptor, std::string_view name,
                 const std::function<void(std::string_view line)>& each) {
    struct stat status = {};
    const bool file = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    Progress progress(session, file ? static_cast<std::uint64_t>(status.st_size) : 0);
    LineReader reader(descriptor, [&] { session.out.Flush(); });
    std::string_view line;
    while (session.out.Good() && reader.Next(line)) {
        each(line);
        progress.Line(line.size());
    }
    if (reader.Error() == 0) return true;
    session.Problem(name, std::string("Can't be read: ") + std::strerror(reader.Error()));
    return false;
}

bool FilterFile(Session& session, const std::wstring& path, const std::function<void(std::string_view line)>& each) {
    const std::string name = PathToBytes(Files().RealPath(path));
    const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        session.Problem(name, std::string("Can't be read: ") + std::strerror(errno), "Check name and rights.");
        return false;
    }
    const bool read = FilterInput(session, descriptor, name, each);
    close(descriptor);
    return read;
}

}  // namespace orv::cfg
