#include "GridReport.h"

#include "Document.h"
#include "platform/crypto/Sha256.h"

namespace orv::cfg {

namespace {

void ShowPart(Document& document, const GridPart& part, Facts& block, const std::string& name) {
    const auto place = [&](double value) { return Cell::Number(value, part.degrees ? 6 : 3); };
    block.Add("South", "south", place(part.south));
    block.Add("North", "north", place(part.north));
    block.Add("West", "west", place(part.west));
    block.Add("East", "east", place(part.east));
    block.Add("Bounds are in", "unit", Cell::Of(std::string(part.degrees ? "degrees" : "metres")));
    block.Add("Latitude step", "latitudeStep", place(part.latitudeStep));
    block.Add("Longitude step", "longitudeStep", place(part.longitudeStep));
    block.Add("Rows", "rows", Cell::Count(part.rows));
    block.Add("Columns", "columns", Cell::Count(part.columns));
    block.Add("Nodes", "nodes", Cell::Count(part.Nodes()));
    const auto share = [&](const GridValues& values) {
        Cell cell = Cell::Number(100.0 * static_cast<double>(values.missing) / static_cast<double>(part.Nodes()), 2);
        cell.text += " %";
        return cell;
    };
    const auto figure = [](const GridValues& values, double value) {
        return values.held > 0 ? Cell::Number(value, 4) : Cell::Missing("all nodes are without data");
    };
    if (part.values.size() == 1) {
        const GridValues& values = part.values.front();
        block.Add("Without data", "noDataPercent", share(values));
        block.Add("Smallest value", "smallest", figure(values, values.smallest));
        block.Add("Largest value", "largest", figure(values, values.largest));
        return;
    }
    Table& table = document.AddTable("Values" + (part.name.empty() ? "" : " of " + part.name), name + "Values",
                                     {{"Value", "value"},
                                      {"Unit", "unit"},
                                      {"Without data", "noDataPercent", true},
                                      {"Smallest", "smallest", true},
                                      {"Largest", "largest", true}});
    for (const GridValues& values : part.values) {
        table.Add({Cell::Of(values.what), Cell::Of(values.unit), share(values), figure(values, values.smallest),
                   figure(values, values.largest)});
    }
}

}  // namespace

void ReportGrid(Document& document, const std::wstring& path, const MappedFile& content, const RecognisedGrid& grid,
                const std::string& name) {
    const GridFacts& facts = grid.facts;
    Facts& block = document.AddFacts("Grid", name);
    block.Add("File", "file", Cell::Path(path));
    block.Add("Form", "form", Cell::Of(std::string(grid.form->name)));
    block.Add("Size in bytes", "bytes", Cell::Count(static_cast<std::int64_t>(content.Bytes().size())));
    block.Add("Nodes are", "nodeType", Cell::Of(facts.nodeType));
    block.Add("SHA-256", "sha256", Cell::Of(Sha256Hex(content.Text())));
    const bool one = facts.parts.size() == 1;
    for (std::size_t n = 0; n < facts.parts.size(); ++n) {
        const GridPart& part = facts.parts[n];
        const std::string partName = one ? name : "part" + std::to_string(n + 1);
        ShowPart(document, part, one ? block : document.AddFacts("Part " + part.name, partName), partName);
    }
}

}  // namespace orv::cfg
