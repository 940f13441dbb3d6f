#include "PasswordInput.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "Session.h"
#include "platform/crypto/Wipe.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::size_t kLongest = 1024;  // bytes

/// Takes the echo off, and the keys that end a program with it: one that dies here would leave the terminal mute.
class QuietTerminal {
public:
    QuietTerminal() {
        valid = tcgetattr(STDIN_FILENO, &before) == 0;
        termios quiet = before;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG);
        quiet.c_cc[VMIN] = 1;
        quiet.c_cc[VTIME] = 0;
        valid = valid && tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet) == 0;
    }
    ~QuietTerminal() {
        if (valid) tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    }
    bool Valid() const { return valid; }

private:
    termios before{};
    bool valid = false;
};

/// A line of standard input, byte by byte, so that nothing behind it is taken.
class LineBytes {
public:
    ~LineBytes() { WipeMemory(bytes.data(), bytes.size()); }

    /// Null, or why there is no line. `terminal`: its editing keys count.
    const char* Read(bool terminal) {
        constexpr char interrupt = 3, endOfInput = 4, backspace = 8, del = 127;
        for (;;) {
            char c = 0;
            const ssize_t got = read(STDIN_FILENO, &c, 1);
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return std::strerror(errno);
            if (got == 0) return size > 0 ? nullptr : "there is no input";
            if (c == '\n' || (terminal && c == '\r')) return nullptr;
            if (terminal && (c == interrupt || c == endOfInput)) return "cancelled";
            if (terminal && (c == backspace || c == del)) {
                RemoveLast();
            } else if (size == kLongest) {
                return "it is too long";
            } else {
                bytes[size++] = c;
            }
        }
    }
    std::string_view View() const {
        std::string_view text(bytes.data(), size);
        if (text.ends_with('\r')) text.remove_suffix(1);
        return text;
    }

private:
    void RemoveLast() {
        while (size > 0 && (bytes[size - 1] & 0xC0) == 0x80) --size;  // the rest of a character in UTF-8
        if (size > 0) --size;
    }
    std::array<char, kLongest> bytes{};
    std::size_t size = 0;
};

void Prompt(const std::string& text) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

Secret::~Secret() {
    WipeMemory(text.data(), text.size() * sizeof(wchar_t));
}

bool ReadPassword(Session& session, const std::string& prompt, Secret& password) {
    LineBytes line;
    const char* problem = nullptr;
    session.Await(STDIN_FILENO);
    if (isatty(STDIN_FILENO) == 1) {
        const QuietTerminal quiet;  // before the prompt: what is typed ahead shows, and is dropped
        Prompt(prompt + ": ");
        problem = quiet.Valid() ? line.Read(true) : "the terminal's echo can't be taken off";
        Prompt("\n");
    } else {
        problem = line.Read(false);
    }
    if (!problem && !IsUtf8(line.View())) problem = "it isn't UTF-8";
    if (problem) {
        session.Problem({}, std::string("No password could be read: ") + problem,
                        "Type it, or send it as the first line of the standard input.");
        return false;
    }
    password.text = FromUtf8(line.View());
    return true;
}

bool ReadNewPassword(Session& session, Secret& password) {
    if (!ReadPassword(session, "New password", password)) return false;
    if (isatty(STDIN_FILENO) != 1) return true;
    Secret again;
    if (!ReadPassword(session, "The same again", again)) return false;
    if (again.text == password.text) return true;
    session.Problem({}, "The two passwords differ", "Nothing was changed; try again.");
    return false;
}

}  // namespace orv::cfg
