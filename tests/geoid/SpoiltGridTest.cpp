#include <algorithm>
#include <limits>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_EGM2008.h"
#include "geoid/TestGrid.h"

namespace orv::test {
namespace {

// How nodes lie in a file, so that the smallest and the largest of a spoilt one can be told without its reader.
enum class Nodes { Floats, BigFloats, Millimetres, Narrow512, Wide512, Numbers };

struct Spoilable {
    const char* label;
    unsigned short typeId;
    std::wstring name, file;  // as given to the model, and below the folder
    bool inCommon;
    std::string bytes;
    Nodes nodes;
    std::size_t first;               // byte of the first node
    double beyond = 1e-5;            // how far an interpolation may leave the nodes' range, in ranges
    std::size_t from = 0, till = 0;  // header bytes that change what a node means
};

std::vector<Spoilable> Files() {
    const TestGrid g;
    const std::string list = KilometreList();
    std::string belgium;
    for (int n = 0; n < 40; ++n) belgium += std::string(20, '7') + std::to_string(40.5 + n) + "\n";
    return {
        {"quasi-geoid", 16, L"q.bin", L"q.bin", true, Quasigeoid(g), Nodes::Millimetres, 72},
        {"DSBB", 4, L"", L"netherlands/nlgeo04.grd", false, Dsbb(g), Nodes::Floats, 56, 0.3},
        {"byn narrow", 23, L"c.byn", L"c.byn", true, Byn(g, 2), Nodes::Narrow512, 80, 1e-5, 24, 34},
        {"byn wide", 23, L"c.byn", L"c.byn", true, Byn(g, 4), Nodes::Wide512, 80, 1e-5, 24, 34},
        {"GRAVSOFT", 14, L"", L"Denmark/Dvr90g2002.01", false, Gravsoft(g, 777, true), Nodes::Floats, 64},
        {"gri", 24, L"o.gri", L"United Kingdom/o.gri", false, Gri(g), Nodes::Numbers, 0},
        {"VORF", 27, L"v.txt", L"v.txt", true, Vorf(g), Nodes::Numbers, 0},
        {"GGF", 26, L"t.ggf", L"t.ggf", true, Ggf().Bytes(), Nodes::Floats, 146, 1e-5, 128, 144},
        {"GGF cubic", 26, L"t.ggf", L"t.ggf", true, Ggf{.interpolation = 4}.Bytes(), Nodes::Floats, 146, 0.3, 128, 144},
        {"GTX", 28, L"t.gtx", L"Netherlands/t.gtx", false, GtxFile(50, 4, 0.125, 10, 11, Bumpy), Nodes::BigFloats, 40,
         1e-5, 32, 40},
        {"NTv2", 29, L"t.gsb", L"Netherlands/t.gsb", false, ShiftFile(), Nodes::Floats, 352},
        // Its first cells go on for a kilometre to the west and south.
        {"1 km heights", 24, L"k.txt", L"United Kingdom/k.txt", false, list, Nodes::Numbers, 0, 4},
        {"1 km shifts", 25, L"k.txt", L"United Kingdom/k.txt", false, list, Nodes::Numbers, 0, 4},
        {"Belgium", 5, L"", L"belgium/hBG03.grd", false, belgium, Nodes::Numbers, 0},
    };
}

struct Range {
    double low = 0, high = 0;  // a file that is cut short may leave zeros
    void Take(double value) {
        if (!std::isfinite(value)) return;
        low = std::min(low, value);
        high = std::max(high, value);
    }
};

template <class T>
T NodeAt(const std::string& bytes, std::size_t at, bool swapped = false) {
    std::array<char, sizeof(T)> raw;
    std::copy_n(bytes.data() + at, sizeof(T), raw.data());
    if (swapped) std::reverse(raw.begin(), raw.end());
    return std::bit_cast<T>(raw);
}

Range RangeOf(const Spoilable& row, const std::string& bytes) {
    Range range;
    if (row.nodes == Nodes::Numbers) {
        // Columns of a fixed form cut numbers short: any place may begin one.
        for (std::size_t at = 0; at < bytes.size(); ++at) range.Take(std::strtod(bytes.c_str() + at, nullptr));
        return range;
    }
    const std::size_t size = row.nodes == Nodes::Narrow512 ? 2 : 4;
    for (std::size_t at = row.first; at + size <= bytes.size(); at += size) {
        if (row.nodes == Nodes::Floats || row.nodes == Nodes::BigFloats) {
            range.Take(NodeAt<float>(bytes, at, row.nodes == Nodes::BigFloats));
        } else if (row.nodes == Nodes::Millimetres) {
            range.Take(NodeAt<std::int32_t>(bytes, at) / 1000.0);
        } else if (row.nodes == Nodes::Narrow512) {
            range.Take(NodeAt<std::int16_t>(bytes, at) / 512.0);
        } else {
            range.Take(NodeAt<std::int32_t>(bytes, at) / 512.0);
        }
    }
    return range;
}

class SpoiltGrid : public testing::Test {
protected:
    /// Everything that a model may be asked, at places all over the tiny grids; `check` sees each value that it gives.
    template <class Check>
    void Ask(const Spoilable& row, const std::string& bytes, Check check) const {
        GeoidFolders::Write(row.inCommon ? folders.Common(row.file) : folders.Models(row.file), bytes);
        const auto model = MakeModel(row.typeId);
        model->SetFileName(row.name);
        for (const auto& [latitude, longitude] :
             {std::pair{50.3, 4.6}, {50.9, 6.1}, {50.2, 6.2}, {50.55, 4.3}, {50.0, 4.0}, {51.125, 6.5}, {0.0, 0.0}}) {
            const double x = 399500 + (longitude - 4) * 2500, y = 99500 + (latitude - 50) * 5000;
            const double height = HeightAt(*model, latitude, longitude, x, y);
            if (height != kUntouched) check(height);
            for (const bool back : {false, true}) {
                double a = kUntouched, b = kUntouched;
                if (model->Calculate(x, y, a, b, back)) check(a), check(b);
                if (!model->CalculateLocalEllipsCorrection(latitude, longitude, a, b, !back)) continue;
                check(a * 3600);
                check(b * 3600);
            }
        }
    }
    GeoidFolders folders;
};

// Each byte in turn becomes 0, 255 and one more: a value or none, and never one that no interpolation can make.
TEST_F(SpoiltGrid, AnyByte) {
    for (const Spoilable& row : Files()) {
        int values = 0;
        // Beyond the header a byte stands for its neighbours: every prime number of them.
        for (std::size_t at = 0; at < row.bytes.size(); at += at < std::max<std::size_t>(row.first, 60) ? 1 : 7) {
            const auto old = static_cast<unsigned char>(row.bytes[at]);
            for (const int byte : {0, 255, old + 1}) {
                std::string spoilt = row.bytes;
                spoilt[at] = static_cast<char>(byte);
                const bool othersMeant = at >= row.from && at < row.till;
                const Range range = othersMeant ? Range{} : RangeOf(row, spoilt);
                const double margin = row.beyond * (range.high - range.low) + 1e-6;
                Ask(row, spoilt, [&](double value) {
                    ++values;
                    ASSERT_TRUE(std::isfinite(value)) << row.label << ", byte " << at;
                    if (othersMeant) return;
                    const bool shift = row.typeId == 29;  // either sign
                    const double low = shift ? std::min(range.low, -range.high) : range.low;
                    const double high = shift ? std::max(range.high, -range.low) : range.high;
                    ASSERT_GE(value, low - margin) << row.label << ", byte " << at << " is " << byte;
                    ASSERT_LE(value, high + margin) << row.label << ", byte " << at << " is " << byte;
                });
            }
        }
        EXPECT_TRUE(values > 100 || row.typeId == 5) << row.label << " " << values;
    }
}

// What a short file still gives is what the whole one gives, but for texts, whose last number may be cut, for the form
// whose last node counts twice,
// and for the one that leaves zeros.
TEST_F(SpoiltGrid, AnyLength) {
    for (const Spoilable& row : Files()) {
        std::vector<double> whole;
        Ask(row, row.bytes, [&](double value) { whole.push_back(value); });
        const bool exact = row.nodes != Nodes::Numbers && row.typeId != 26 && row.typeId != 4;
        for (std::size_t length = 0; length < row.bytes.size(); length += length < 400 ? 1 : 3) {
            Ask(row, row.bytes.substr(0, length), [&](double value) {
                ASSERT_TRUE(std::isfinite(value)) << row.label;
                if (!exact) return;
                ASSERT_NE(std::find(whole.begin(), whole.end(), value), whole.end()) << row.label << " at " << length;
            });
        }
    }
}

}  // namespace
}  // namespace orv::test
