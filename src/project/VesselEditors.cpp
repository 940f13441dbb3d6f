#include "project/VesselEditors.h"

#include <algorithm>

#include "core/DataSearch.h"
#include "platform/text/NumberText.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr int kLengthUnit = 1;                     // kind of unit
constexpr std::array<int, 3> kPens = {0, 1, 257};  // by their place in the list

unsigned FeetFlags() {
    const ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    unsigned flags = 0;
    project.GetFeetsFlags(flags);
    return project.GetUnitCnv()->GetUnitMnem(kLengthUnit) == L"ft" ? flags : 0;
}

}  // namespace

void VesselOffsetEditor::SetData(const VesselOffset& data) {
    record = data;
    hasData = true;
}

int VesselOffsetEditor::DoModal() {
    OffsetDialog dialog;
    dialog.feetFlags = FeetFlags();
    if (hasData) dialog.offset = record;
    const int result = show ? show(dialog) : static_cast<int>(kDialogCancel);
    if (result == kDialogOk) record = dialog.offset;
    offsetName = dialog.offset.name;
    return result;
}

void CVesselPointDlg::SetData(const VesselPoint& point, int side) {
    name = point.name;
    x = point.x;
    y = point.y;
    const auto pen = std::find(kPens.begin(), kPens.end(), point.pen);
    penEntry = pen == kPens.end() ? -1 : static_cast<int>(pen - kPens.begin());
    SetViewSide(side);
}

bool CVesselPointDlg::GetData(VesselPoint& point) const {
    if (name.empty() || penEntry < 0 || penEntry >= static_cast<int>(kPens.size())) return false;
    point = {name, x, y, kPens[static_cast<std::size_t>(penEntry)]};
    return true;
}

// Seen from port or starboard the drawing lies along the vessel, from bow or stern across it; height is upright in
// both.
void CVesselPointDlg::SetViewSide(int side) {
    const bool along = side == 2 || side == 3, across = side == 4 || side == 5;
    labels = {along ? L"Y" : L"X", along || across ? L"Z" : L"Y"};
}

std::vector<std::array<std::wstring, 3>> CVslContourListCtrl::Rows(const VesselContour& contour) {
    std::vector<std::array<std::wstring, 3>> rows;
    for (const VesselPoint& point : contour.points) {
        rows.push_back({point.name, FixedText(point.x, 3), FixedText(point.y, 3)});
    }
    return rows;
}

}  // namespace orv
