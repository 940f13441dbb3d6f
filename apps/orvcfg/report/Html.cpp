#include "Html.h"

#include <algorithm>

#include "../Document.h"
#include "../Svg.h"

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
th, td { padding: 4px 10px 4px 0; vertical-align: top; overflow-wrap: anywhere; }
td { border-bottom: 1px solid var(--line); }
tbody tr:nth-child(even) { background: var(--stripe); }
.right { text-align: right; white-space: nowrap; }
.facts th { width: 38%; font-weight: 400; border-bottom: 1px solid var(--line); }
.facts tr { background: none !important; }
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
@media (max-width: 760px) { .pairs { grid-template-columns: 1fr; } section { overflow-x: auto; } }
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

std::string Shown(const Cell& cell) {
    if (cell.reason.empty()) return XmlEscaped(cell.text);
    const std::string reason = "<span class=\"none\">" + XmlEscaped(cell.reason) + "</span>";
    // A value may have a reason beside it: what speaks against its use.
    return cell.value.is_null() ? reason : XmlEscaped(cell.text) + " " + reason;
}

std::string HtmlOf(const Facts& facts) {
    std::string html = "<table class=\"facts\"><tbody>\n";
    for (const Facts::Row& row : facts.Rows()) {
        html += "<tr><th scope=\"row\">" + XmlEscaped(row.label) + "</th><td>" + Shown(row.cell) + "</td></tr>\n";
    }
    return html + "</tbody></table>\n";
}

std::string HtmlOf(const Table& table) {
    const std::vector<Column>& columns = table.Columns();
    const auto side = [&](std::size_t n) { return columns[n].right ? " class=\"right\"" : ""; };
    std::string html = "<table><thead><tr>";
    for (std::size_t n = 0; n < columns.size(); ++n) {
        if (columns[n].hidden) continue;
        html += std::string("<th scope=\"col\"") + side(n) + ">" + XmlEscaped(columns[n].heading) + "</th>";
    }
    html += "</tr></thead><tbody>\n";
    for (const std::vector<Cell>& row : table.Rows()) {
        html += "<tr>";
        for (std::size_t n = 0; n < columns.size(); ++n) {
            if (!columns[n].hidden) html += std::string("<td") + side(n) + ">" + Shown(row[n]) + "</td>";
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
    std::string html;
    bool paired = false;
    const auto pair = [&](bool wanted) {
        if (wanted != paired) html += wanted ? "<div class=\"pairs\">\n" : "</div>\n";
        paired = wanted;
    };
    for (const Document::Block& block : document.Blocks()) {
        if (const auto* remark = std::get_if<std::string>(&block.content)) {
            html += "<p class=\"remark\">" + XmlEscaped(*remark) + "</p>\n";
            continue;
        }
        const auto* facts = std::get_if<Facts>(&block.content);
        pair(facts != nullptr);
        if (facts) html += "<div>";
        if (!block.heading.empty()) html += "<h3>" + XmlEscaped(block.heading) + "</h3>\n";
        html += facts ? HtmlOf(*facts) + "</div>\n" : HtmlOf(std::get<Table>(block.content));
    }
    pair(false);
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
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" +
           XmlEscaped(title) + "</title>\n<style>" + std::string(kStyle) + "</style>\n</head>\n<body>\n" +
           std::string(body) + "</body>\n</html>\n";
}

}  // namespace orv::cfg
