#include "geoid/GeoidModel_OSGM.h"

#include "core/ConfigKeys.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"

namespace orv {

bool GeoidModel_OSGM::SetFileName(std::wstring name) {
    fileName = std::move(name);
    relativeName = ToNativePath(L"United Kingdom\\" + fileName);
    kilometres = {};
    frame = {};
    values.clear();
    std::wstring folder, title, extension;
    SplitPath(relativeName, folder, title, extension);
    isGrid = EqualNoCase(extension, L"gri");

    std::string text;
    if (!ReadGridFile(kLocationGeoidModels, relativeName, info, text)) {
        info.error = isGrid ? L"Failed to open file " + relativeName : std::wstring();
        return Answer(GeoidReason::NoFile);
    }
    if (isGrid) {
        info.status = ReadGrid(text);
    } else {
        kilometres.Read(text, [](const KilometreLine& line, std::array<double, 1>& node) {
            node[0] = line.reals[line.fields == 5 ? 0 : 2];
            return line.fields == 5 || line.fields == 7;
        });
        info.status = kGeoidOk;
    }
    return Answer(info.Reason());
}

int GeoidModel_OSGM::ReadGrid(std::string_view text) {
    std::string_view line;
    NextLine(text, line);
    TextScan header(line);
    // A number that is missing leaves this and the following at 0, and with them a step.
    (void)(header.Real(frame.south) && header.Real(frame.north) && header.Real(frame.west) && header.Real(frame.east) &&
           header.Real(frame.latitudeStep) && header.Real(frame.longitudeStep));
    if (frame.latitudeStep == 0.0 || frame.longitudeStep == 0.0) return kGeoidBadHeader;
    if (!frame.CountNodes(1.0)) return kGeoidBadHeader;

    while (NextLine(text, line)) {
        TextScan in(line);
        float value = 0.0f;
        for (int n = 0; n < 8 && in.Float(value); ++n) values.push_back(value);
    }
    values.shrink_to_fit();
    if (static_cast<std::int64_t>(values.size()) == std::int64_t{frame.rows} * frame.columns) return kGeoidOk;
    info.error = L"No data in file " + relativeName;
    return kGeoidNoData;
}

int GeoidModel_OSGM::Grid_interpolation(double longitude, double latitude, double& result) const {
    GridCell cell;
    if (!frame.HoldsInner(longitude, latitude) || !frame.Pick(longitude, latitude, cell)) return kGeoidOutside;
    std::array<float, 4> q{};
    const int code = TakeNodes(values, 1, frame.CornersNorthFirst(cell), Is9999, q);
    if (code == kGeoidOk) result = Bilinear(q, cell.u, cell.v);
    return code;
}

bool GeoidModel_OSGM::Calculate(double latitude, double longitude, double easting, double northing, double& value,
                                std::wstring&) {
    if (info.status != kGeoidOk) return Answer(info.Reason());
    double height = 0.0;
    int code = kGeoidOk;
    if (isGrid) {
        code = Grid_interpolation(longitude, latitude, height);
    } else {
        std::array<double, 1> node{};
        const double x = unitFactor * easting - kilometres.firstEasting;
        const double y = unitFactor * northing - kilometres.firstNorthing;
        if (!kilometres.Interpolate(x, y, node)) code = kGeoidOutside;
        height = node[0];
    }
    return Deliver(code, height, value);
}

void GeoidModel_OSGM::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 24, &relativeName);
}

}  // namespace orv
