#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace orv::cfg {

/// Lines of a file descriptor, one after the other, without their line feed. A line counts whatever its length; the
/// last one needs no line feed.
class LineReader {
public:
    /// `beforeWait` runs before each read that may have to wait: what is finished can go out, so that a program at the
    /// other end of both pipes gets its answers.
    LineReader(int descriptor, std::function<void()> beforeWait);
    /// False at the end, or when reading failed. The view is good until the next call.
    bool Next(std::string_view& line);
    int Error() const { return error; }            ///< errno of a failed read, 0 at a plain end
    std::size_t Number() const { return number; }  ///< of the line given last, from 1

private:
    bool Fill();
    int descriptor;
    std::function<void()> beforeWait;
    std::vector<char> buffer;
    std::size_t begin = 0, end = 0;  // what is held and not given yet
    std::size_t number = 0;
    bool atEnd = false;
    int error = 0;
};

}  // namespace orv::cfg
