#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

class ProjectDefinition;

/// Numbers in internal units as every view shows them: by the decimals and units of the project that is open when the
/// formatter is made. It doesn't own the project and must not outlive it. Any thread while the project doesn't change.
class ORV_EXPORT OrvFormatter {
public:
    OrvFormatter();

    std::wstring FormatXCoordinate(double value) const;
    std::wstring FormatYCoordinate(double value) const;
    std::wstring FormatLatitude(double degrees) const;
    std::wstring FormatLongitude(double degrees) const;
    std::wstring FormatDistance(double value, bool addUnit, bool addSpace) const;
    std::wstring FormatDepth(double value, bool addUnit, bool addSpace) const;
    std::wstring FormatSpeed(double value, bool addUnit, bool addSpace) const;
    std::wstring FormatBearing(double degrees) const;  ///< with the decimals of grid coordinates
    /// `kind`: a unit kind. Decimals below 0 mean the project's for the kind, or as many as the value has. A text in
    /// feet and inch shows its unit itself.
    std::wstring FormatValue(int kind, double value, bool addUnit, bool addSpace, int decimals) const;
    /// A kilometre point: 12.3456 as 12+345.6 where the project's unit for it is a station. With `addUnit` the text is
    /// the mnemonic of the system unit alone; whoever wants both asks for the number without.
    std::wstring FormatKP(double value, bool addUnit, bool addSpace) const;
    std::wstring FormatKP(double value, int decimals, bool addUnit, bool addSpace) const;

private:
    int GridDecimals() const;
    std::wstring StationText(double value, int decimals) const;
    const ProjectDefinition* project;
};

}  // namespace orv
