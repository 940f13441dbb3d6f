#include "Html.h"

#include <algorithm>
#include <span>

#include "../Document.h"
#include "../Svg.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

// Colours of drawings are attributes, which rules of the page override: so drawings follow into the dark.
constexpr std::string_view kStyle = R"(
:root { color-scheme: light dark; --page: #f2f4f6; --card: #ffffff; --ink: #1b2733; --soft: #5b6b7a;
  --line: #d9e0e6; --head: #123a5e; --headink: #ffffff; --stripe: #f6f8fa; --error: #b3261e; --errorback: #fdecea;
  --warning: #8a5300; --warningback: #fff4e0; --good: #1e6b3a; --goodback: #e8f5ec; --hull: #e4edf5; --amber: #fbe3b5;
  --blue: #1f5fa8; --orange: #d9600a; }
@media screen and (prefers-color-scheme: dark) { :root { --page: #12181e; --card: #1b232b; --ink: #e4eaf0;
  --soft: #9aabba; --line: #35424e; --head: #0d2c48; --headink: #e4eaf0; --stripe: #202a33; --error: #ff8a80;
  --errorback: #3a1d1b; --warning: #ffc566; --warningback: #382a10; --good: #7fd39a; --goodback: #16301f;
  --hull: #263849; --amber: #5c4415; --blue: #6aa9f0; --orange: #ff9a4d; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink);
  font: 15px/1.45 "Helvetica Neue", Helvetica, Arial, "DejaVu Sans", sans-serif; }
header { background: var(--head); color: var(--headink); padding: 28px 0 22px; }
header div, main { max-width: 1120px; margin: 0 auto; padding: 0 28px; }
header h1 { margin: 0 0 4px; font-size: 27px; font-weight: 600; overflow-wrap: anywhere; }
header p { margin: 2px 0; opacity: .88; overflow-wrap: anywhere; }
nav { margin-top: 14px; font-size: 14px; }
nav a { color: inherit; margin-right: 18px; text-decoration: none; border-bottom: 1px solid; }
section { background: var(--card); border: 1px solid var(--line); border-radius: 6px; margin: 22px 0;
  padding: 18px 24px 22px; }
h2 { margin: 0 0 12px; font-size: 20px; font-weight: 600; overflow-wrap: anywhere; }
h3 { margin: 20px 0 6px; font-size: 15px; font-weight: 600; color: var(--soft); overflow-wrap: anywhere; }
.pairs { display: grid; grid-template-columns: 1fr 1fr; gap: 0 36px; align-items: start; }
table { border-collapse: collapse; width: 100%; font-size: 13.5px; font-variant-numeric: tabular-nums; }
th { text-align: left; font-weight: 600; color: var(--soft); border-bottom: 2px solid var(--line); }
th, td { padding: 4px 10px 4px 0; vertical-align: top; overflow-wrap: break-word; }
.short { white-space: nowrap; } .facts td { overflow-wrap: anywhere; white-space: normal; }
td { border-bottom: 1px solid var(--line); }
tbody tr:nth-child(even) { background: var(--stripe); }
th.right, td.right { text-align: right; white-space: nowrap; padding-right: 20px; }
.facts th { width: 38%; font-weight: 400; border-bottom: 1px solid var(--line); }
.facts tbody tr:nth-child(even) { background: none; }
.none, .remark { color: var(--soft); font-style: italic; }
figure { margin: 14px 0 0; }
svg { display: block; width: 100%; height: auto; }
.finding { border-left: 4px solid; border-radius: 3px; padding: 8px 14px; margin: 8px 0; break-inside: avoid; }
.finding p { margin: 2px 0; overflow-wrap: anywhere; }
.finding .where { font-family: "DejaVu Sans Mono", monospace; font-size: 12.5px; color: var(--soft); }
.error { background: var(--errorback); border-color: var(--error); }
.warning { background: var(--warningback); border-color: var(--warning); }
.good { background: var(--goodback); border-color: var(--good); }
.error b { color: var(--error); } .warning b { color: var(--warning); } .good b { color: var(--good); }
svg [fill="white"] { fill: var(--card); } svg text { fill: var(--ink); }
svg [stroke="#1b2733"], svg [stroke="#333333"] { stroke: var(--ink); }
svg circle[fill="#1b2733"] { fill: var(--ink); }
svg [stroke="#dde3e8"] { stroke: var(--line); } svg [fill="#fbe3b5"] { fill: var(--amber); }
svg [fill="#e4edf5"] { fill: var(--hull); } svg [stroke="#1f5fa8"] { stroke: var(--blue); }
svg [fill="#1f5fa8"] { fill: var(--blue); } svg [stroke="#d9600a"] { stroke: var(--orange); }
svg [fill="#d9600a"] { fill: var(--orange); }
footer { max-width: 1120px; margin: 0 auto; padding: 0 28px 28px; color: var(--soft); font-size: 13px; }
@media screen and (max-width: 760px) { .pairs { grid-template-columns: 1fr; } section { overflow-x: auto; } }
@page { size: A4; margin: 14mm; }
@media print {
  body { background: none; font-size: 10pt; } nav { display: none; }
  header { background: none; color: var(--ink); padding: 0 0 6pt; border-bottom: 2px solid var(--head); }
  header div, main, footer { max-width: none; padding: 0; }
  section { border: 0; border-radius: 0; margin: 12pt 0; padding: 0; }
  table { font-size: 8.5pt; } thead { display: table-header-group; }
  tr, figure, .facts { break-inside: avoid; } h2, h3 { break-after: avoid; }
  .finding, tbody tr:nth-child(even) { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
}
)";

/// Long paths break behind a slash, and nothing breaks within a word.
std::string Breakable(std::string_view text) {
    std::string html;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('/', at), text.size() - 1) + 1;
        html += XmlEscaped(text.substr(at, end - at)) + (end < text.size() ? "<wbr/>" : "");
        at = end;
    }
    return html;
}

std::string Shown(const Cell& cell) {
    if (cell.reason.empty()) return Breakable(cell.text);
    const std::string reason = "<span class=\"none\">" + XmlEscaped(cell.reason) + "</span>";
    // A value may have a reason beside it: what speaks against its use.
    return cell.value.is_null() ? reason : XmlEscaped(cell.text) + " " + reason;
}

std::string FactsHtml(std::span<const Facts::Row> rows) {
    std::string html = "<table class=\"facts\"><tbody>\n";
    for (const Facts::Row& row : rows) {
        html += "<tr><th scope=\"row\">" + XmlEscaped(row.label) + "</th><td>" + Shown(row.cell) + "</td></tr>\n";
    }
    return html + "</tbody></table>\n";
}

std::string HtmlOf(const Table& table) {
    const std::vector<Column>& columns = table.Columns();
    constexpr std::size_t kShort = 20;  // bytes: what fits a column stays on its line
    const auto side = [&](std::size_t n, std::size_t length) {
        return columns[n].right ? " class=\"right\"" : length <= kShort ? " class=\"short\"" : "";
    };
    std::string html = "<table><thead><tr>";
    for (std::size_t n = 0; n < columns.size(); ++n) {
        if (columns[n].hidden) continue;
        html += std::string("<th scope=\"col\"") + side(n, 0) + ">" + XmlEscaped(columns[n].heading) + "</th>";
    }
    html += "</tr></thead><tbody>\n";
    for (const std::vector<Cell>& row : table.Rows()) {
        html += "<tr>";
        for (std::size_t n = 0; n < columns.size(); ++n) {
            if (!columns[n].hidden)
                html += std::string("<td") + side(n, row[n].text.size()) + ">" + Shown(row[n]) + "</td>";
        }
        html += "</tr>\n";
    }
    return html + "</tbody></table>\n";
}

void ReplaceFirst(std::string& text, std::string_view from, std::string_view to) {
    if (const std::size_t at = text.find(from); at != text.npos) text.replace(at, from.size(), to);
}

}  // namespace

std::string HtmlOf(const Document& document) {
    const auto& blocks = document.Blocks();
    const auto factsAt = [&](std::size_t n) {
        return n < blocks.size() ? std::get_if<Facts>(&blocks[n].content) : nullptr;
    };
    std::string html;
    for (std::size_t n = 0; n < blocks.size(); ++n) {
        const std::string heading =
            blocks[n].heading.empty() ? std::string() : "<h3>" + XmlEscaped(blocks[n].heading) + "</h3>\n";
        if (const auto* remark = std::get_if<std::string>(&blocks[n].content)) {
            html += "<p class=\"remark\">" + XmlEscaped(*remark) + "</p>\n";
        } else if (const auto* table = std::get_if<Table>(&blocks[n].content)) {
            html += heading + HtmlOf(*table);
        } else if (const Facts* next = factsAt(n + 1)) {
            const std::string& nextHeading = blocks[n + 1].heading;
            html += "<div class=\"pairs\"><div>" + heading + FactsHtml(factsAt(n)->Rows()) + "</div><div>" +
                    (nextHeading.empty() ? nextHeading : "<h3>" + XmlEscaped(nextHeading) + "</h3>\n") +
                    FactsHtml(next->Rows()) + "</div></div>\n";
            ++n;
        } else {  // alone, it fills both columns
            const std::span<const Facts::Row> rows(factsAt(n)->Rows());
            const std::size_t half = (rows.size() + 1) / 2;
            html += heading + "<div class=\"pairs\"><div>" + FactsHtml(rows.first(half)) + "</div><div>" +
                    FactsHtml(rows.subspan(half)) + "</div></div>\n";
        }
    }
    return html;
}

std::string InlineSvg(std::string_view file) {
    std::string svg(file);
    ReplaceFirst(svg, " xmlns=\"http://www.w3.org/2000/svg\"", " role=\"img\"");
    // The first two are those of the drawing itself; the view box keeps its proportions.
    for (const std::string_view name : {" width=\"", " height=\""}) {
        const std::size_t at = svg.find(name), end = at == svg.npos ? at : svg.find('"', at + name.size());
        if (end != svg.npos) svg.erase(at, end + 1 - at);
    }
    return "<figure>" + svg + "</figure>\n";
}

std::string HtmlPage(std::string_view title, std::string_view body) {
    // A name on disk is any bytes, and a page that isn't UTF-8 throughout is read by guesses.
    if (!IsUtf8(body)) return HtmlPage(title, ToUtf8(FromUtf8(body)));
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" +
           XmlEscaped(title) + "</title>\n<style>" + std::string(kStyle) + "</style>\n</head>\n<body>\n" +
           std::string(body) + "</body>\n</html>\n";
}

}  // namespace orv::cfg
