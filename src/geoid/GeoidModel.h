#pragma once

#include <cmath>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

class OrvGeoCoordSysBase;

/// Codes of the read and interpolation functions inside the models.
enum GeoidCode : int {
    kGeoidOk = 0,
    kGeoidBadHeader = -1,  ///< a header that can't be used: an interval of 0, a wrong marker
    kGeoidNoData = -2,     ///< reading: no file or nothing in it; interpolating: a no-data cell
    kGeoidOutside = -4,    ///< the position, or a node that is needed, lies outside the grid
};

/// Why a model gave no value, for tools; the stated result stays the bool.
enum class GeoidReason { None, NoFile, BadHeader, Outside, NoData, NotSupported };
ORV_EXPORT std::wstring_view GeoidReasonText(GeoidReason reason);

/// What all height reference models have in common: for a position, by how much the height reference differs from the
/// ellipsoid; for horizontal models, by how much a coordinate is shifted. Made by the creators of `GeoidModelList`,
/// then `Init`, `SetFileName` and, where it applies, `SetGeoidChartDatum`; after that `Calculate` any number of times
/// and from any number of threads, while nothing else is called on the object. Owned by whoever asked the creator.
/// Copies hold their own lists and share tiles that never change.
///
/// Positions are decimal degrees, latitude first. What leaves a model is in length units of the project: metres divided
/// by the unit factor.
class ORV_EXPORT GeoidModel {
public:
    GeoidModel();
    GeoidModel(const GeoidModel& other);
    GeoidModel& operator=(const GeoidModel& other);

    // The virtual operations stand in a fixed order.

    virtual ~GeoidModel();
    /// Binds the model to its coordinate system: unit factor and label. A null pointer means metres, "m".
    virtual bool Init(OrvGeoCoordSysBase* coordSys);
    /// Horizontal shift of projected coordinates, in and out in project units. Here: false.
    virtual bool Calculate(double x, double y, double& dx, double& dy, bool inverse);
    /// Vertical separation in project units. Some models append to `text`. Here: false, outputs untouched.
    virtual bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                           std::wstring& text);
    /// Geographic shift in degrees. Here: false.
    virtual bool CalculateLocalEllipsCorrection(double latitude, double longitude, double& dLatitude,
                                                double& dLongitude, bool direct);
    /// Loads or prepares the model's data; true when it can be used. Here it stores the name and answers false.
    virtual bool SetFileName(std::wstring name);
    virtual void SetGeoidChartDatum(std::wstring chartDatum);
    /// Tests that the model's files are in a folder; fills the message if not. Here: false, message untouched.
    virtual bool CheckGeoidModelFiles(const std::wstring& folder, std::wstring& message, bool withDropHint);
    virtual void DumpGeoidXml(std::wostream& stream, const wchar_t* indent);

    /// Hands a text to the alert channel without stopping the caller.
    unsigned ReportAlert(const std::wstring& text) const;

    const std::wstring& FileName() const { return fileName; }
    const std::wstring& ChartDatum() const { return chartDatum; }
    double UnitFactor() const { return unitFactor; }  ///< metres per length unit of the project
    const std::wstring& UnitLabel() const { return unitLabel; }

    /// Why the last failed operation on this object gave no value, as seen by the calling thread. Successes leave the
    /// note standing (the way to a value stays free of it), but for a successful `SetFileName`, which takes it away.
    GeoidReason LastReason() const;
    /// The file the model read or looked for, with its folder; empty for models without a file. For tools.
    virtual std::wstring DataFile() const { return {}; }

protected:
    /// Turns a code into the stated bool and notes the reason of a failure; a success that is passed takes an older
    /// note away. `Deliver` passes none.
    bool Answer(int code) const;
    bool Answer(GeoidReason reason) const;
    /// Ends a `Calculate`: `metres` in project units where the code is kGeoidOk and there is a number to give.
    bool Deliver(int code, double metres, double& value) const {
        if (code != kGeoidOk) return Answer(code);
        if (!std::isfinite(metres)) return Answer(GeoidReason::NoData);
        value = unitFactor == 1.0 ? metres : metres / unitFactor;
        return true;
    }
    /// The same for the two figures of a shift, as they leave the model.
    bool DeliverShift(double first, double second, double& dFirst, double& dSecond) const {
        if (!std::isfinite(first) || !std::isfinite(second)) return Answer(GeoidReason::NoData);
        dFirst = first;
        dSecond = second;
        return true;
    }
    /// Writes the whole dump of a model with one file, or with none when `path` is null.
    static void DumpOneFile(std::wostream& stream, const wchar_t* indent, int keyIndex, const std::wstring* path);
    /// The two ends of a dump; what stands between them is the model's own.
    static void DumpOpening(std::wostream& stream, const wchar_t* indent, int keyIndex);
    static void DumpClosing(std::wostream& stream, const wchar_t* indent);
    /// One line of a list of files, and a block of one file.
    static void DumpFileLine(std::wostream& stream, const wchar_t* indent, const std::wstring& path);
    static void DumpFileBlock(std::wostream& stream, const wchar_t* indent, std::wstring_view tag,
                              const std::wstring& path);
    /// A line of its own, indented by two more.
    static void DumpLine(std::wostream& stream, const wchar_t* indent, std::wstring_view line);

    std::wstring fileName, chartDatum;
    double unitFactor = 1.0;
    std::wstring unitLabel;
};

}  // namespace orv
