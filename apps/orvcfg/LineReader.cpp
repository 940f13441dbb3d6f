#include "LineReader.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace orv::cfg {

namespace {
constexpr std::size_t kBlock = 256 * 1024;
}

LineReader::LineReader(int from, std::function<void()> callBeforeWait)
    : descriptor(from), beforeWait(std::move(callBeforeWait)), buffer(2 * kBlock) {}

bool LineReader::Fill() {
    if (atEnd) return false;
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.data() + begin, end - begin);
        end -= begin;
        begin = 0;
    }
    if (buffer.size() - end < kBlock) buffer.resize(2 * buffer.size());
    beforeWait();
    ssize_t got = 0;
    do {
        got = read(descriptor, buffer.data() + end, kBlock);
    } while (got < 0 && errno == EINTR);
    if (got < 0) error = errno;
    if (got <= 0) {
        atEnd = true;
        return false;
    }
    end += static_cast<std::size_t>(got);
    return true;
}

bool LineReader::Next(std::string_view& line) {
    std::size_t searched = 0;  // of what is held: a long line isn't searched again from its start
    for (;;) {
        const char* const first = buffer.data() + begin;
        const void* const found = std::memchr(first + searched, '\n', end - begin - searched);
        if (found) {
            const auto size = static_cast<std::size_t>(static_cast<const char*>(found) - first);
            line = {first, size};
            begin += size + 1;
            ++number;
            return true;
        }
        searched = end - begin;
        if (Fill()) continue;
        if (error != 0 || searched == 0) return false;
        line = {buffer.data() + begin, searched};
        begin = end;
        ++number;
        return true;
    }
}

}  // namespace orv::cfg
