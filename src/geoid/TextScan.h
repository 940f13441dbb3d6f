#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Takes numbers off the front of a line of a grid file one by one, as a scan format does: blanks before a number don't
/// count, what follows it stays. Words for what is no number ("nan", "inf") aren't taken.
class ORV_EXPORT TextScan {
public:
    explicit TextScan(std::string_view line) : rest(line) {}

    bool Literal(char c);                                                  ///< this very character
    bool Int(std::int32_t& value);                                         ///< %d
    bool Real(double& value);                                              ///< %lf
    bool Float(float& value, std::size_t width = std::string_view::npos);  ///< %f, from at most `width` characters

private:
    void SkipBlanks();
    template <class Number>
    bool Take(Number& value, std::size_t width);

    std::string_view rest;
};

/// Takes the next line off a text, without its line end (LF or CR LF); false when nothing is left.
ORV_EXPORT bool NextLine(std::string_view& text, std::string_view& line);

/// Bytes of a text file as wide text: UTF-8, or else the old code page 1252.
std::wstring GridText(std::string_view bytes);

}  // namespace orv
