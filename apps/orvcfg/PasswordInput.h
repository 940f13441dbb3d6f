#pragma once

#include <string>

namespace orv::cfg {

class Session;

/// A text that is overwritten in memory when it goes. Not to be copied.
class Secret {
public:
    explicit Secret(std::wstring secret = {}) : text(std::move(secret)) {}
    ~Secret();
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    std::wstring text;
};

/// Asks for a password: on a terminal without echo, from any other standard input its next line, and nothing behind
/// it. `prompt` and everything else goes to the error output; the password never does. False after a problem has been
/// told.
bool ReadPassword(Session& session, const std::string& prompt, Secret& password);
/// The same; on a terminal twice, as nobody sees what is typed.
bool ReadNewPassword(Session& session, Secret& password);

}  // namespace orv::cfg
