#pragma once

#include <string>
#include <string_view>

namespace orv::cfg {

class Document;

/// Blocks of a document as tables of a page: facts in two columns, tables under their headings. What is missing shows
/// its reason. All of it is escaped.
std::string HtmlOf(const Document& document);

/// An SVG file as part of a page: as wide as there is room, and without what only a file of its own needs.
std::string InlineSvg(std::string_view file);

/// A whole page around its sections, with all it needs in itself: it can be sent, printed, and kept for years.
std::string HtmlPage(std::string_view title, std::string_view body);

}  // namespace orv::cfg
