#include "Document.h"

#include <algorithm>
#include <cmath>

#include "Session.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::string_view kMissing = "*";

std::size_t Width(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// A control character in a file's text must not reach the terminal, nor break a row.
std::string Shown(std::string_view text) {
    std::string shown(text);
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return shown;
}

std::string Padded(std::string_view text, std::size_t width, bool right) {
    const std::string blanks(width - std::min(width, Width(text)), ' ');
    return right ? blanks + std::string(text) : std::string(text) + blanks;
}

std::string Reasons(const std::vector<Cell>& cells) {
    std::string all;
    for (const Cell& cell : cells) {
        if (cell.reason.empty() || all.find(cell.reason) != std::string::npos) continue;
        if (!all.empty()) all += "; ";
        all += cell.reason;
    }
    return all;
}

}  // namespace

// ---- cells

Cell Cell::Of(std::wstring_view text) {
    return Of(ToUtf8(text));
}

Cell Cell::Of(std::string text) {
    Json value = text;
    return {std::move(text), std::move(value), {}};
}

Cell Cell::Path(std::wstring_view path) {
    return {PathToBytes(path), ToUtf8(path), {}};
}

Cell Cell::Number(double value, int decimals) {
    if (!std::isfinite(value)) return Missing("no finite number");
    return {Fixed(value, decimals), value, {}};
}

Cell Cell::Count(std::int64_t value) {
    return {ToUtf8(IntText(value)), value, {}};
}

Cell Cell::Flag(bool value) {
    return {value ? "yes" : "no", value, {}};
}

Cell Cell::Missing(std::string_view reason) {
    return {std::string(kMissing), nullptr, std::string(reason)};
}

Cell Cell::OrMissing(std::wstring_view text, std::string_view reason) {
    return text.empty() ? Missing(reason) : Of(text);
}

void Facts::Add(std::string label, std::string name, Cell cell) {
    rows.push_back({std::move(label), std::move(name), std::move(cell)});
}

void Table::Add(std::vector<Cell> cells) {
    cells.resize(columns.size());
    rows.push_back(std::move(cells));
}

// ---- the document

Facts& Document::AddFacts(std::string heading, std::string name) {
    blocks.push_back({std::move(heading), std::move(name), Facts()});
    return std::get<Facts>(blocks.back().content);
}

Table& Document::AddTable(std::string heading, std::string name, std::vector<Column> columns) {
    blocks.push_back({std::move(heading), std::move(name), Table(std::move(columns))});
    return std::get<Table>(blocks.back().content);
}

void Document::AddRemark(std::string text) {
    blocks.push_back({{}, {}, std::move(text)});
}

Json Document::ToJson(const Facts& facts) {
    Json object = Json::object();
    for (const Facts::Row& row : facts.rows) {
        object[row.name] = row.cell.value;
        if (!row.cell.reason.empty()) object[row.name + "Reason"] = row.cell.reason;
    }
    return object;
}

Json Document::ToJson(const Table& table) {
    Json array = Json::array();
    for (const std::vector<Cell>& row : table.rows) {
        Json object = Json::object();
        for (std::size_t i = 0; i < row.size(); ++i) object[table.columns[i].name] = row[i].value;
        if (const std::string reasons = Reasons(row); !reasons.empty()) object["reason"] = reasons;
        array.push_back(std::move(object));
    }
    return array;
}

void Document::Print(Session& session, const Facts& facts, std::string_view indent) {
    std::size_t width = 0;
    for (const Facts::Row& row : facts.rows) width = std::max(width, Width(row.label));
    for (const Facts::Row& row : facts.rows) {
        std::string line = std::string(indent) + Padded(row.label, width, false) + "  " + Shown(row.cell.text);
        if (!row.cell.reason.empty()) line += "  " + session.out.Styled(Shown(row.cell.reason), Style::Dim);
        session.out.Put(line + "\n");
    }
}

void Document::Print(Session& session, const Table& table, std::string_view indent, bool headings) {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        std::size_t width = headings ? Width(table.columns[i].heading) : 0;
        for (const std::vector<Cell>& row : table.rows) width = std::max(width, Width(row[i].text));
        widths.push_back(width);
    }
    const auto put = [&](const auto& textOf, std::string_view behind, Style style) {
        std::string line;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            if (table.columns[i].hidden) continue;
            if (!line.empty() || i > 0) line += "  ";
            line += Padded(textOf(i), widths[i], table.columns[i].right);
        }
        if (behind.empty()) line.erase(line.find_last_not_of(' ') + 1);
        line = session.out.Styled(line, style);
        if (!behind.empty()) line += "  " + session.out.Styled(behind, Style::Dim);
        session.out.Put(std::string(indent) + line + "\n");
    };
    if (headings) put([&](std::size_t i) { return table.columns[i].heading; }, {}, Style::Bold);
    for (const std::vector<Cell>& row : table.rows) {
        put([&](std::size_t i) { return Shown(row[i].text); }, Shown(Reasons(row)), Style::Plain);
    }
}

void Document::Print(Session& session) const {
    if (session.options.json) {
        Json object = Json::object();
        for (const Block& block : blocks) {
            if (const auto* facts = std::get_if<Facts>(&block.content)) object[block.name] = ToJson(*facts);
            if (const auto* table = std::get_if<Table>(&block.content)) object[block.name] = ToJson(*table);
        }
        return PrintJson(session, object);
    }
    bool first = true;
    for (const Block& block : blocks) {
        if (const auto* remark = std::get_if<std::string>(&block.content)) {
            session.out.Put("  " + *remark + "\n");
            continue;
        }
        if (!first) session.out.Put("\n");
        first = false;
        session.out.Put(session.out.Styled(block.heading, Style::Bold) + "\n");
        if (const auto* facts = std::get_if<Facts>(&block.content)) Print(session, *facts, "  ");
        if (const auto* table = std::get_if<Table>(&block.content)) Print(session, *table, "  ", true);
    }
}

void Document::Print(Session& session, const Table& table) {
    if (session.options.json) return PrintJson(session, ToJson(table));
    Print(session, table, "", !session.options.quiet && !table.Empty());
}

void PrintJson(Session& session, const Json& value) {
    session.out.Put(value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

std::string Fixed(double value, int decimals) {
    return ToUtf8(FixedText(value, decimals));
}

}  // namespace orv::cfg
