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

/// A line of a grid that lists its points: degrees and metres. A fourth number must follow, of which nobody makes use.
struct ListedHeight {
    double latitude = 0.0, longitude = 0.0, height = 0.0;
};
/// The next such line of a text; others are passed over.
ORV_EXPORT bool NextListedHeight(std::string_view& text, ListedHeight& point);

/// Bytes of a text file as wide text: UTF-8, or else the old code page 1252.
std::wstring GridText(std::string_view bytes);

}  // namespace orv
