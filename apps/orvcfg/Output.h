#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orv::cfg {

class Progress;

/// How a word stands out on a terminal; elsewhere it is written as it is.
enum class Style { Plain, Bold, Dim, Good, Warning, Error };

/// True for a terminal that understands more than lines.
bool IsScreen(int descriptor);
/// True for such a terminal whose user hasn't switched colours off by NO_COLOR.
bool ShowsColours(int descriptor);
std::string Styled(std::string_view text, Style style, bool colours);

/// Where results go: a file descriptor with a buffer, and the first failure of writing to it. A failed output swallows
/// what comes after, so that a command may write on and ask once at its end.
class Output {
public:
    /// `line` makes room for each write: results may go to the same terminal, if only through a pager.
    Output(int descriptor, Progress& line);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Put(std::string_view text);
    void PutLine(std::string_view line);  ///< with its line feed in one piece
    bool Flush();
    bool Good() const { return error == 0; }
    int Error() const { return error; }  ///< errno of the first failure
    bool IsTerminal() const { return terminal; }
    /// For a terminal with its colours, for everything else plain.
    std::string Styled(std::string_view text, Style style) const { return cfg::Styled(text, style, colours); }

private:
    static constexpr std::size_t kBufferSize = 256 * 1024;
    int descriptor;
    int error = 0;
    bool terminal, colours;
    Progress& progress;
    std::string buffer;
};

/// Makes descriptors 0 to 2 safe to use and takes the standard output away from everybody but the commands: what the
/// library prints by itself goes to the error output. Returns the descriptor for results, -1 if there is none.
int TakeStandardOutput();

}  // namespace orv::cfg
