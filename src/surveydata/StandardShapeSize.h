#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

class CAttributeMap;
class FileObject;

/// The box that a standard shape fills around the reference of a dredge tool: six distances in metres, kept as one
/// text of six numbers. A distance may be negative where a tool's measures are stated with their sign. A value: one
/// thread at a time.
class ORV_EXPORT StandardShapeSize {
public:
    double GetXDistPort() const { return xDistPort; }
    void SetXDistPort(double metres) { xDistPort = metres; }
    double GetXDistStarboard() const { return xDistStarboard; }
    void SetXDistStarboard(double metres) { xDistStarboard = metres; }
    double GetYDistFore() const { return yDistFore; }
    void SetYDistFore(double metres) { yDistFore = metres; }
    double GetYDistAft() const { return yDistAft; }
    void SetYDistAft(double metres) { yDistAft = metres; }
    double GetZDistLow() const { return zDistLow; }
    void SetZDistLow(double metres) { zDistLow = metres; }
    double GetZDistHigh() const { return zDistHigh; }
    void SetZDistHigh(double metres) { zDistHigh = metres; }

    double GetLength() const { return yDistAft + yDistFore; }
    double GetWidth() const { return xDistStarboard + xDistPort; }
    double GetHeight() const;  ///< never negative
    double GetXShift() const { return (xDistStarboard - xDistPort) * 0.5; }
    double GetYShift() const { return (yDistAft - yDistFore) * 0.5; }
    double GetZShift() const { return (zDistHigh - zDistLow) * 0.5; }

    // A load that fails changes nothing; exactly six numbers are a text.

    bool Load(std::wstring_view text);
    bool Save(std::wstring& text) const;
    bool Load(const FileObject* file, std::wstring_view section);  ///< false for a null file
    bool Save(FileObject* file, std::wstring_view section) const;
    bool Load(const CAttributeMap& attributes);
    bool Save(CAttributeMap& attributes) const;

    /// Computes the box of one segment, counted from 0, from the attributes of its tool: by the kind of the segment if
    /// it has one, else by the kind of the tool.
    void SizeStandardShape(const CAttributeMap& attributes, int segment);

    bool operator==(const StandardShapeSize&) const = default;

private:
    double xDistPort = 0.5, xDistStarboard = 0.5, yDistFore = 0, yDistAft = 1, zDistLow = 1, zDistHigh = 0;
};

}  // namespace orv
