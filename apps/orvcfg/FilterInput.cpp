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

bool FilterInput(Session& session, int descriptor, std::string_view name,
                 const std::function<void(std::string_view line)>& each) {
    struct stat status = {};
    const bool file = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    const off_t left = file ? status.st_size - lseek(descriptor, 0, SEEK_CUR) : 0;
    session.progress.Expect("lines", left > 0 ? static_cast<std::uint64_t>(left) : 0);
    LineReader reader(descriptor, [&] { session.Await(descriptor); });
    std::string_view line;
    while (session.out.Good() && reader.Next(line)) {
        each(line);
        session.progress.Step(1, line.size() + 1);
    }
    if (reader.Error() == 0) return true;
    session.Problem(name, std::string("Can't be read: ") + std::strerror(reader.Error()));
    return false;
}

bool FilterFile(Session& session, const std::wstring& path, const std::function<void(std::string_view line)>& each) {
    // As it is written first: a name such as /dev/fd/63 stands for what can be opened and has no other name.
    const std::string name = PathToBytes(path);
    int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 && errno == ENOENT) {
        descriptor = open(PathToBytes(Files().RealPath(path)).c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (descriptor < 0) {
        session.Problem(name, std::string("Can't be read: ") + std::strerror(errno), "Check name and rights.");
        return false;
    }
    const bool read = FilterInput(session, descriptor, name, each);
    close(descriptor);
    return read;
}

}  // namespace orv::cfg
