#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace orv {

/// Severity. Hosts have further ones; all are stored as given.
enum MSG_LEVEL : std::int32_t { kLevelInformation = 1, kLevelFailure = 2, kLevelException = 3 };
/// Kind of a message for the views. This library uses 0 only; stored as given.
enum MSG_FILTER : std::int32_t { kNoFilter = 0 };

/// One stored message. Copies share the text.
template <class Char>
class Message {
public:
    using Text = std::basic_string<Char>;

    Message() = default;
    Message(Text content, MSG_LEVEL severity, std::int32_t number, MSG_FILTER kind)
        : text(std::make_shared<const Text>(std::move(content))), level(severity), sequence(number), filter(kind) {}

    const Text& GetText() const {
        static const Text none;
        return text ? *text : none;
    }
    MSG_LEVEL GetLevel() const { return level; }
    std::int32_t GetSequence() const { return sequence; }  ///< 1 for the first message of its sink
    MSG_FILTER GetFilter() const { return filter; }
    void SetSequence(std::int32_t number) { sequence = number; }  ///< to search for it

private:
    std::shared_ptr<const Text> text;
    MSG_LEVEL level{};
    std::int32_t sequence = 0;
    MSG_FILTER filter{};
};

}  // namespace orv
