#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Export.h"

/// The entry points by which other applications open the editors of vessels and projects, and the rules behind their
/// fields. No toolkit: a host shows the dialogues. Main thread.
namespace orv {

/// What a dialogue came to.
enum DialogResult : int { kDialogOk = 1, kDialogCancel = 2 };

/// A named point on a vessel: starboard, forward and up from its zero, in metres.
struct VesselOffset {
    std::wstring name;
    double x = 0, y = 0, z = 0;
};

/// What the offset dialogue shows and the user changes.
struct OffsetDialog {
    VesselOffset offset;
    unsigned feetFlags = 0;  ///< how feet are shown: bit 1 feet, 2 inch, 4 fractions; 0 where lengths aren't in feet
};

/// Shows a dialogue until it is left; gives a DialogResult.
using ShowOffsetDialog = std::function<int(OffsetDialog& dialog)>;
using ShowProjectDialog = std::function<int(const std::wstring& title)>;

class ORV_EXPORT VesselOffsetEditor {
public:
    explicit VesselOffsetEditor(ShowOffsetDialog showDialog) : show(std::move(showDialog)) {}

    void SetData(const VesselOffset& data);
    const VesselOffset& GetData() const { return record; }  ///< as set, or as the user left it with OK
    /// The name that stood in the dialogue when it was left, also by Cancel.
    const std::wstring& GetOffsetName() const { return offsetName; }
    /// The dialogue's result; without a host that shows it, kDialogCancel.
    int DoModal();

private:
    ShowOffsetDialog show;
    VesselOffset record;
    std::wstring offsetName;
    bool hasData = false;
};

class ORV_EXPORT ProjectConfigEditor {
public:
    ProjectConfigEditor(std::wstring dialogTitle, ShowProjectDialog showDialog)
        : title(std::move(dialogTitle)), show(std::move(showDialog)) {}
    int DoModal() { return show ? show(title) : static_cast<int>(kDialogCancel); }

private:
    std::wstring title;
    ShowProjectDialog show;
};

/// A point of a vessel's outline, in metres in the plane of the view.
struct VesselPoint {
    std::wstring name;
    double x = 0, y = 0;
    int pen = 0;  ///< how the line to it is drawn
};

struct VesselContour {
    std::vector<VesselPoint> points;
};

/// The form in which one point of an outline is edited.
class ORV_EXPORT CVesselPointDlg {
public:
    std::wstring name;
    double x = 0, y = 0;
    int penEntry = 0;  ///< 0 to 2, in the list of pens; -1 for none

    /// Shows a point, seen from `side`. A pen that isn't in the list becomes no entry of it: -1.
    void SetData(const VesselPoint& point, int side);
    /// False, and `point` is left alone, while the point has no name or no pen of the list.
    bool GetData(VesselPoint& point) const;
    /// Which of the axes the two fields are for depends on the side that the vessel is seen from.
    void SetViewSide(int side);
    const std::array<std::wstring, 2>& GetLabels() const { return labels; }

private:
    std::array<std::wstring, 2> labels = {L"X", L"Y"};
};

/// An outline as a list shows it: a row a point with name, X and Y, in metres with three decimals.
class ORV_EXPORT CVslContourListCtrl {
public:
    static std::vector<std::array<std::wstring, 3>> Rows(const VesselContour& contour);
};

}  // namespace orv
