#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/text/Utf.h"

namespace orv {

/// A wide argument as UTF-8, on the stack while it is short: names of sections and keys are looked up all the time.
class SmallUtf8 {
public:
    explicit SmallUtf8(std::wstring_view text) {
        if (text.size() <= room.size()) {
            wchar_t all = 0;
            for (std::size_t i = 0; i < text.size(); ++i) {
                all |= text[i];
                room[i] = static_cast<char>(text[i]);
            }
            if (static_cast<unsigned>(all) < 0x80) {
                view = std::string_view(room.data(), text.size());
                return;
            }
        }
        AppendUtf8(large, text);
        view = large;
    }
    SmallUtf8(const SmallUtf8&) = delete;
    SmallUtf8& operator=(const SmallUtf8&) = delete;
    std::string_view View() const { return view; }

private:
    std::array<char, 96> room;  // left as it is: filled up to the length of the text
    std::string large;
    std::string_view view;
};

}  // namespace orv
