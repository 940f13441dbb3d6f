#include "geoid/GeoidModel_OSTN.h"

#include "core/ConfigKeys.h"
#include "geoid/GridReader.h"
#include "platform/text/PathText.h"

namespace orv {

bool GeoidModel_OSTN::SetFileName(std::wstring name) {
    fileName = std::move(name);
    relativeName = ToNativePath(L"United Kingdom\\" + fileName);
    grid = {};
    GridFileInfo file;
    std::string text;
    opened = ReadGridFile(kLocationGeoidModels, relativeName, file, text);
    path = file.fileName;
    if (!opened) return Answer(GeoidReason::NoFile);
    grid.Read(text, [](const KilometreLine& line, std::array<double, 2>& node) {
        node = {line.reals[0], line.reals[1]};
        return line.fields == 7;
    });
    return Answer(kGeoidOk);
}

bool GeoidModel_OSTN::Calculate(double x, double y, double& dx, double& dy, bool inverse) {
    std::array<double, 2> shift{};
    const bool found =
        inverse ? InterpolateBack(x, y, shift)
                : grid.Interpolate(x * unitFactor - grid.firstEasting, y * unitFactor - grid.firstNorthing, shift);
    if (!found) return opened ? Answer(kGeoidOutside) : Answer(GeoidReason::NoFile);
    return DeliverShift(shift[0] / unitFactor, shift[1] / unitFactor, dx, dy);
}

// Looks the shift up again and again at where the last one leads back to, until one of the two stands still. The unit
// factor stands twice: with any unit but metres the search begins far off, as it always has.
bool GeoidModel_OSTN::InterpolateBack(double x, double y, std::array<double, 2>& shift) const {
    constexpr double enough = 0.0001;
    constexpr int mostPasses = 100;
    shift = {};
    for (int pass = 1; pass <= mostPasses; ++pass) {
        const std::array<double, 2> last = shift;
        const double xBack = (x * unitFactor - last[0]) * unitFactor - grid.firstEasting;
        const double yBack = (y * unitFactor - last[1]) * unitFactor - grid.firstNorthing;
        const bool inside = grid.Interpolate(xBack, yBack, shift);  // outside the last shift stays
        if (pass > 1 && (std::fabs(last[0] - shift[0]) <= enough || std::fabs(last[1] - shift[1]) <= enough)) {
            return inside;
        }
    }
    return false;
}

void GeoidModel_OSTN::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 25, &relativeName);
}

}  // namespace orv
