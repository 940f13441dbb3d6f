#include "geoid/GeoidModel_RDNAP2018_hor.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"

namespace orv {

namespace {

// A header record: eight characters of label, which nobody compares, and eight of value.
template <class T>
T HeaderValue(GridReader& in) {
    in.Skip(8);
    const T value = in.Read<T>();
    in.Skip(8 - sizeof(T));
    return value;
}
constexpr std::uint64_t kHeaderRecord = 16;
constexpr std::uint64_t kOverviewRecords = 11;  // of the file, before the first grid
constexpr std::uint64_t kNameRecords = 4;       // SUB_NAME to UPDATED

constexpr int kNeverSettles = -5;  // told as outside; the other grid isn't asked then

// NtvTwoSubgrid::Interpolate, where the few that need it fast find it.
[[gnu::always_inline]] inline int ShiftAt(const NtvTwoSubgrid& grid, double p, double q, double& latitudeShift,
                                          double& longitudeShift) {
    const bool inside = grid.E_LONG + grid.LONG_INC < q && q < grid.W_LONG - grid.LONG_INC &&
                        grid.S_LAT + grid.LAT_INC < p && p < grid.N_LAT - grid.LAT_INC;
    std::int32_t i = 0, j = 0;
    if (!inside || !FloorQuotient(q - grid.E_LONG, grid.LONG_INC, grid.columnsPerSecond, i) ||
        !FloorQuotient(p - grid.S_LAT, grid.LAT_INC, grid.rowsPerSecond, j)) {
        return kGeoidOutside;
    }
    const NodeBlock<2> block{std::int64_t{j} * grid.columns + i, grid.columns};
    std::array<NtvTwoSubgrid::Record, 4> corners{};
    const auto test = [](const NtvTwoSubgrid::Record& r) {
        return std::isnan(r[0]) || std::isnan(r[1]) ? kGeoidNoData : kGeoidOk;
    };
    const int code = grid.complete ? TakeNodes(grid.records, 1, block, AllHaveData{}, corners)
                                   : TakeNodesInTurn(grid.records, 1, block, test, corners);
    if (code != kGeoidOk) return code;
    const auto f = static_cast<float>((p - grid.S_LAT - j * grid.LAT_INC) / grid.LAT_INC);
    const auto g = static_cast<float>((q - grid.E_LONG - i * grid.LONG_INC) / grid.LONG_INC);
    latitudeShift = BilinearSingle({corners[0][0], corners[1][0], corners[2][0], corners[3][0]}, g, f);
    longitudeShift = BilinearSingle({corners[0][1], corners[1][1], corners[2][1], corners[3][1]}, g, f);
    return kGeoidOk;
}

// The shift at a shifted position: looked up again and again at where the last shift leads back to, until one of the
// two coordinates stands still.
int InterpolateBack(const NtvTwoSubgrid& grid, double p, double q, double& a, double& b) {
    constexpr double enough = 0.0000036;
    constexpr int mostPasses = 100;
    a = b = 0.0;
    for (int pass = 1; pass <= mostPasses; ++pass) {
        const double lastA = a, lastB = b;
        const int code = ShiftAt(grid, p - lastA, q - lastB, a, b);
        if (code != kGeoidOk) return code;
        if (pass > 1 && (std::fabs(lastB - b) <= enough || std::fabs(lastA - a) <= enough)) return kGeoidOk;
    }
    return kNeverSettles;
}

}  // namespace

int NtvTwoSubgrid::Read(GridReader& in) {
    *this = {};
    in.Skip(kNameRecords * kHeaderRecord);
    S_LAT = HeaderValue<double>(in);
    N_LAT = HeaderValue<double>(in);
    E_LONG = HeaderValue<double>(in);
    W_LONG = HeaderValue<double>(in);
    LAT_INC = HeaderValue<double>(in);
    LONG_INC = HeaderValue<double>(in);
    GS_COUNT = HeaderValue<std::int32_t>(in);
    if (LONG_INC == 0.0 || LAT_INC == 0.0) return kGeoidBadHeader;
    columnsPerSecond = 1.0 / LONG_INC;
    rowsPerSecond = 1.0 / LAT_INC;
    if (!TruncToInt((W_LONG - E_LONG) / LONG_INC + 1.1, columns) ||
        !TruncToInt((N_LAT - S_LAT) / LAT_INC + 1.1, rows)) {
        return kGeoidBadHeader;
    }
    const std::uint64_t count = in.NodesLeft(GS_COUNT, 2 * sizeof(Record));
    records.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) {
        Record& record = records.emplace_back();
        for (float& value : record) value = in.Read<float>();
        in.Skip(sizeof(Record));
    }
    complete = std::none_of(records.begin(), records.end(),
                            [](const Record& record) { return std::isnan(record[0]) || std::isnan(record[1]); });
    return kGeoidOk;
}

int NtvTwoSubgrid::Interpolate(double p, double q, double& latitudeShift, double& longitudeShift) const {
    return ShiftAt(*this, p, q, latitudeShift, longitudeShift);
}

int GeoidModel_RDNAP2018_hor::ReadFile(std::span<const std::byte> bytes) {
    GridReader in(bytes);
    in.Skip(kOverviewRecords * kHeaderRecord);
    for (NtvTwoSubgrid& grid : subgrids) {
        if (const int code = grid.Read(in); code != kGeoidOk) return code;
    }
    for (const NtvTwoSubgrid& grid : subgrids) {
        if (grid.GS_COUNT < 0 || grid.records.size() != static_cast<std::size_t>(grid.GS_COUNT)) {
            return info.NoDataInFile();
        }
    }
    return kGeoidOk;
}

bool GeoidModel_RDNAP2018_hor::SetFileName(std::wstring name) {
    fileName = std::move(name);
    subgrids = {};
    std::string bytes;
    if (ReadGridFile(kLocationGeoidModels, L"Netherlands\\" + fileName, info, bytes)) {
        info.status = ReadFile(AsBytes(bytes));
    }
    return Answer(info.Reason());
}

bool GeoidModel_RDNAP2018_hor::CalculateLocalEllipsCorrection(double latitude, double longitude, double& dLatitude,
                                                              double& dLongitude, bool direct) {
    if (info.status != kGeoidOk) return Answer(info.Reason());
    const double p = latitude * 3600, q = longitude * -3600;
    double a = 0.0, b = 0.0;
    int code = direct ? ShiftAt(subgrids[1], p, q, a, b) : InterpolateBack(subgrids[1], p, q, a, b);
    if (code != kGeoidOk) [[unlikely]] {
        if (code == kNeverSettles) return Answer(code);
        double outerA = 0.0, outerB = 0.0;
        code =
            direct ? subgrids[0].Interpolate(p, q, outerA, outerB) : InterpolateBack(subgrids[0], p, q, outerA, outerB);
        if (code != kGeoidOk) return Answer(code);
        a = outerA;
        b = outerB;
    }
    return DeliverShift(a / -3600, b / 3600, dLatitude, dLongitude);
}

void GeoidModel_RDNAP2018_hor::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 29, &info.fileName);
}

}  // namespace orv
