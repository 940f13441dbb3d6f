#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orv::cfg {

/// Where results go: a file descriptor with a buffer, and the first failure of writing to it. A failed output swallows
/// what comes after, so that a command may write on and ask once at its end.
class Output {
public:
    explicit Output(int descriptor);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Put(std::string_view text);
    bool Flush();
    bool Good() const { return error == 0; }
    int Error() const { return error; }  ///< errno of the first failure
    bool IsTerminal() const { return terminal; }

private:
    static constexpr std::size_t kBufferSize = 256 * 1024;
    int descriptor;
    int error = 0;
    bool terminal;
    std::string buffer;
};

/// Makes descriptors 0 to 2 safe to use and takes the standard output away from everybody but the commands: what the
/// library prints by itself goes to the error output. Returns the descriptor for results, -1 if there is none.
int TakeStandardOutput();

}  // namespace orv::cfg
