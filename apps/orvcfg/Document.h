#pragma once

#include <cstdint>
#include <deque>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orv::cfg {

class Session;
using Json = nlohmann::ordered_json;

/// One value, for people and for programs.
struct Cell {
    std::string text;
    Json value;
    std::string reason;  ///< why there is no value; empty when there is one

    static Cell Of(std::wstring_view text);
    static Cell Of(std::string text);
    static Cell Path(std::wstring_view path);
    static Cell Number(double value, int decimals);
    static Cell Count(std::int64_t value);
    static Cell Flag(bool value);  ///< yes or no
    /// A star in text, null and a reason for programs: nothing that looks like a value stands for a missing one.
    static Cell Missing(std::string_view reason);
    /// `text`, or `reason` in its place when it is empty.
    static Cell OrMissing(std::wstring_view text, std::string_view reason);
};

/// Names with their values, one a line.
class Facts {
public:
    struct Row {
        std::string label, name;
        Cell cell;
    };
    void Add(std::string label, std::string name, Cell cell);
    const std::vector<Row>& Rows() const { return rows; }

private:
    friend class Document;
    std::vector<Row> rows;
};

struct Column {
    std::string heading, name;
    bool right = false;   ///< aligned to the right, as numbers are
    bool hidden = false;  ///< for programs only
};

/// Rows under headings. A row's reasons stand behind it.
class Table {
public:
    explicit Table(std::vector<Column> tableColumns) : columns(std::move(tableColumns)) {}
    void Add(std::vector<Cell> cells);
    bool Empty() const { return rows.empty(); }
    const std::vector<Column>& Columns() const { return columns; }
    const std::vector<std::vector<Cell>>& Rows() const { return rows; }

private:
    friend class Document;
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows;
};

/// What a command has to show: blocks of facts and tables, as text with aligned columns or as one JSON object.
class Document {
public:
    struct Block {
        std::string heading, name;
        std::variant<Facts, Table, std::string> content;  ///< a text is a remark
    };
    Facts& AddFacts(std::string heading, std::string name);
    Table& AddTable(std::string heading, std::string name, std::vector<Column> columns);
    /// A line for people only, below the block before it.
    void AddRemark(std::string text);
    void Print(Session& session) const;
    const std::deque<Block>& Blocks() const { return blocks; }

    /// A table alone: rows under a line of headings (left out by --quiet), or a JSON array.
    static void Print(Session& session, const Table& table);

private:
    static Json ToJson(const Facts& facts);
    static Json ToJson(const Table& table);
    static void Print(Session& session, const Facts& facts, std::string_view indent);
    static void Print(Session& session, const Table& table, std::string_view indent, bool headings);
    std::deque<Block> blocks;  // references to blocks stay good while others are added
};

/// A JSON value on the output, in lines for people's eyes.
void PrintJson(Session& session, const Json& value);
/// `value` with so many decimals; never by the locale.
std::string Fixed(double value, int decimals);

}  // namespace orv::cfg
