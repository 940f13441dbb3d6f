#include "Commands.h"
#include "Document.h"
#include "VesselFile.h"
#include "core/ConfigKeys.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/PathText.h"
#include "surveydata/ShapeSelection.h"
#include "surveydata/StandardShapeSize.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string vessel;
    unsigned device = 0;
};

constexpr int kMostSegments = 1000;

std::vector<Column> Columns() {
    return {{"Segment", "segment"},         {"Standard", "standard"},        {"Shape from above", "shape2D"},
            {"Shape in space", "shape3D"},  {"Width (m)", "width", true},    {"Length (m)", "length", true},
            {"Height (m)", "height", true}, {"Shift X (m)", "shiftX", true}, {"Shift Y (m)", "shiftY", true},
            {"Shift Z (m)", "shiftZ", true}};
}

Cell StandardCell(const ShapeSelection& shape) {
    if (shape.GetStandardShape().empty()) return Cell::Missing("shapes come from files");
    std::wstring text = shape.GetStandardShape();
    const auto group = static_cast<std::size_t>(shape.GetStandardShapeGroup());
    if (group < fileTypeSubKeys.size()) text = std::wstring(fileTypeSubKeys[group]) + L": " + text;
    return Cell::Of(text);
}

void AddRow(Table& table, Cell segment, const ShapeSelection* shape, const StandardShapeSize* box) {
    std::vector<Cell> cells = {std::move(segment)};
    const Cell noShape = Cell::Missing("no shape chosen"), noBox = Cell::Missing("only segments of a tool have a box");
    cells.push_back(shape ? StandardCell(*shape) : noShape);
    cells.push_back(shape ? Cell::OrMissing(shape->Get2DShape(), "none chosen") : noShape);
    cells.push_back(shape ? Cell::OrMissing(shape->Get3DShape(), "none chosen") : noShape);
    const auto metres = [&](double (StandardShapeSize::*get)() const) {
        cells.push_back(box ? Cell::Number((box->*get)(), 3) : noBox);
    };
    metres(&StandardShapeSize::GetWidth);
    metres(&StandardShapeSize::GetLength);
    metres(&StandardShapeSize::GetHeight);
    metres(&StandardShapeSize::GetXShift);
    metres(&StandardShapeSize::GetYShift);
    metres(&StandardShapeSize::GetZShift);
    table.Add(std::move(cells));
}

ExitCode Run(Session& session, const Arguments& arguments) {
    VesselConfig vessel;
    if (!OpenVessel(session, arguments.vessel, vessel)) return kSomeFailed;
    const std::string file = PathToBytes(vessel.GetFileName());
    Table table(Columns());
    if (arguments.device == 0) {
        ShapeSelection shape;
        if (!vessel.GetVesselShape(shape)) {
            session.Problem(file, "The vessel has no shape", "Choose one in the vessel's set-up.");
            return kSomeFailed;
        }
        AddRow(table, Cell::Of(std::wstring_view(L"vessel")), &shape, nullptr);
        Document::Print(session, table);
        return kAllGood;
    }
    CAttributeMap attributes;
    attributes.SetGroup(kDeviceAttributes);
    int segments = 0;
    if (!attributes.LoadFromFObj(vessel, NumberedSection(kDeviceWord, arguments.device), false, false, false)) {
        session.Problem(file, "No device " + std::to_string(arguments.device), "\"orvcfg vessel devices\" shows them.");
        return kSomeFailed;
    }
    if (!attributes.GetAttribValue(L"NumberOfSegments", segments) || segments < 1 || segments > kMostSegments) {
        session.Problem(file, "Device " + std::to_string(arguments.device) + " is no dredge tool of 1 to 1000 segments",
                        "Leave --device out for the shape of the vessel.");
        return kSomeFailed;
    }
    for (int segment = 0; segment < segments; ++segment) {
        ShapeSelection shape;
        StandardShapeSize box;
        const bool chosen = shape.Load(attributes, segment);
        box.SizeStandardShape(attributes, segment);
        AddRow(table, Cell::Count(segment), chosen ? &shape : nullptr, &box);
    }
    Document::Print(session, table);
    return kAllGood;
}

}  // namespace

void AddShape(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(app, "shape", "Show the shape of a vessel, or of each segment of a dredge tool",
                                   "  orvcfg shape Cutter[navigate].vcf --device 4");
    command->add_option("VESSEL", arguments->vessel, "Vessel file, or a vessel of the project")->required();
    command->add_option("--device", arguments->device, "Number of the dredge tool's device")->type_name("N");
    OnRun(command, session, arguments, Run);
}

}  // namespace orv::cfg
