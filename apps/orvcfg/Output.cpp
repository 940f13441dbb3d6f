#include "Output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>

#include "Progress.h"

namespace orv::cfg {

bool IsScreen(int descriptor) {
    const char* const kind = std::getenv("TERM");
    return descriptor >= 0 && isatty(descriptor) == 1 && kind && std::string_view(kind) != "dumb";
}

bool ShowsColours(int descriptor) {
    const char* const off = std::getenv("NO_COLOR");
    return !(off && *off) && IsScreen(descriptor);
}

std::string Styled(std::string_view text, Style style, bool colours) {
    constexpr std::string_view codes[] = {"", "1", "2", "32", "1;33", "1;31"};
    if (!colours || style == Style::Plain) return std::string(text);
    return "\033[" + std::string(codes[static_cast<std::size_t>(style)]) + "m" + std::string(text) + "\033[0m";
}

Output::Output(int where, Progress& line)
    : descriptor(where), terminal(where >= 0 && isatty(where) == 1), colours(ShowsColours(where)), progress(line) {
    buffer.reserve(kBufferSize);
}

void Output::Put(std::string_view text) {
    if (error != 0) return;
    if (buffer.size() + text.size() > kBufferSize && !Flush()) return;
    buffer.append(text);
}

void Output::PutLine(std::string_view line) {
    if (error != 0) return;
    if (buffer.size() + line.size() + 1 > kBufferSize && !Flush()) return;
    buffer.append(line) += '\n';
}

bool Output::Flush() {
    if (buffer.empty()) return error == 0;
    const auto clear = progress.Clear();
    std::size_t done = 0;
    while (error == 0 && done < buffer.size()) {
        const ssize_t written = write(descriptor, buffer.data() + done, buffer.size() - done);
        if (written > 0) {
            done += static_cast<std::size_t>(written);
        } else if (written == 0 || errno != EINTR) {
            error = written == 0 ? EIO : errno;
        }
    }
    buffer.clear();
    return error == 0;
}

int TakeStandardOutput() {
    // A descriptor that the caller has closed would be given to the next file that is opened, and what is printed would
    // land in it.
    bool hadOutput = true;
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) != -1) continue;
        if (standard == STDOUT_FILENO) hadOutput = false;
        if (open("/dev/null", standard == STDIN_FILENO ? O_RDONLY : O_WRONLY) != standard) return -1;
    }
    const int results = hadOutput ? fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3) : -1;
    return dup2(STDERR_FILENO, STDOUT_FILENO) == -1 ? -1 : results;
}

}  // namespace orv::cfg
