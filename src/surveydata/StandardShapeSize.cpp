#include "surveydata/StandardShapeSize.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "core/COrvString.h"
#include "core/FileObject.h"
#include "platform/attributes/CAttributeMap.h"

namespace orv {

namespace {

constexpr std::wstring_view kKey = L"StandardShapeSize";

/// What the attributes say about one segment, by the letters that the rules below use. Metres.
struct Measures {
    double x = 0, y = 0, z = 0;  ///< vector of the segment
    double w = 0, h = 0;         ///< effective width and height
    double d = 0, l = 0, r = 0;  ///< pipe diameter, ladder length, cutter radius

    double Of(char letter) const {
        switch (letter) {
            case 'x':
                return x;
            case 'y':
                return y;
            case 'z':
                return z;
            case 'w':
                return w;
            case 'h':
                return h;
            case 'd':
                return d;
            case 'l':
                return l;
            case 'r':
                return r;
            default:
                return 0.0;
        }
    }
};

/// factor * first + second, where '0' is nought; no size without a first letter.
struct Size {
    char first = 0;
    double factor = 1.0;
    char second = 0;
    double Of(const Measures& measures) const { return factor * measures.Of(first) + measures.Of(second); }
};

/// Sides that a rule sets; `half` is port and starboard. What has no size stays as it was.
struct Box {
    Size half{}, fore{}, aft{}, low{}, high{};
};

constexpr Size kZero = {'0'}, kHalfW = {'w', 0.5}, kHalfZ = {'z', -0.5}, kMinusZ = {'z', -1.0};
constexpr Size kW = {'w'}, kY = {'y'}, kMinusY = {'y', -1.0};

constexpr Box kHalfWidth = {.half = kHalfW};
constexpr Box kSignedWidth = {.half = {'w', -0.5}, .aft = kW, .low = kMinusZ};  // the width comes with its sign
constexpr Box kChainLink = {.half = kHalfZ, .aft = kMinusZ, .low = kMinusZ};
constexpr Box kWideLow = {.half = kHalfW, .low = kW};
constexpr Box kDragHead = {.half = {'w', 0.5, 'x'}, .fore = kY, .aft = {'w', 1.0, 'y'}, .low = kW};

template <class... Numbers>
constexpr std::uint64_t Set(Numbers... numbers) {
    return (... | (std::uint64_t{1} << numbers));
}
constexpr bool Holds(std::uint64_t set, int number) {
    return number >= 0 && number < 64 && (set >> number & 1) != 0;
}

struct SectionRule {
    std::uint64_t sections;
    Box box;
};

// Kinds of segment, 1 to 53; the others keep the base box.
constexpr SectionRule kSectionRules[] = {
    {Set(1, 4, 5, 28, 51), kChainLink},
    {Set(2, 3), {.half = kHalfZ, .aft = kW, .low = kMinusZ}},
    {Set(14), kWideLow},
    {Set(18, 31, 48, 53), kHalfWidth},
    {Set(26), {.half = kHalfW, .aft = kW}},
    {Set(30), kSignedWidth},
    {Set(49, 50), {.half = kHalfW, .aft = kY, .low = kY}},
    {Set(52), {.half = kHalfW, .aft = kMinusY, .low = kMinusZ}},
};

/// Segments of a tool that a rule is for. Driver version 0 counts from the head, version 2 towards it; what says so
/// is for version 2 only, and all other versions have no such place.
enum class Place {
    Head,
    FirstOf2,
    SecondOf2,
    LastTwoOf2,
    Chain,      ///< the segments at the head that hang together
    Inner,      ///< second and third from the head in the chain
    NextToEnd,  ///< second from the head in the chain
    End,        ///< the head of the chain
    LastInChain
};

struct ToolRule {
    std::uint64_t tools;
    Place place;
    Box box;
};

// All that fit apply, from top to bottom.
constexpr ToolRule kToolRules[] = {
    {Set(0, 2, 3, 5, 7, 8, 12, 13, 19), Place::Head, kHalfWidth},
    {Set(1, 21, 23), Place::Head, kSignedWidth},
    {Set(11), Place::Head, kWideLow},
    {Set(4), Place::FirstOf2, {.half = {'d', 0.5}, .fore = kZero, .aft = {'l'}, .low = {'d'}, .high = kZero}},
    {Set(4), Place::SecondOf2, {.half = {'r'}, .fore = kZero, .aft = {'r', 2.0}, .low = {'r', 2.0}, .high = kZero}},
    {Set(22),
     Place::LastTwoOf2,
     {.half = kHalfW, .fore = {'h', 0.5}, .aft = {'h', 0.5}, .low = kMinusZ, .high = kZero}},
    {Set(6, 9, 10, 18, 20, 24, 26, 27, 31), Place::Chain, kChainLink},
    {Set(6, 9, 10, 27), Place::Inner, {.aft = kW}},
    {Set(24), Place::End, {.half = kHalfW, .aft = kMinusY}},
    {Set(24), Place::NextToEnd, kHalfWidth},
    {Set(31), Place::Chain, {.half = kHalfW, .aft = kY, .low = kY}},
    {Set(26), Place::LastInChain, {.half = kHalfW, .aft = kW}},
    {Set(20, 27), Place::End, kDragHead},
};

struct ChainLength {
    int tool, segments;
};
constexpr ChainLength kChainLengths[] = {{6, 5}, {9, 5}, {10, 5}, {18, 1}, {20, 3}, {24, 2}, {26, 3}, {27, 5}, {31, 2}};

/// Where a segment stands in its tool.
struct Position {
    std::int64_t segment, count;
    int driver, chain;

    std::int64_t FromHead() const { return driver == 0 ? segment : count - 1 - segment; }
    bool InChain() const { return segment >= 0 && FromHead() >= 0 && FromHead() < chain; }
    bool Is(Place place) const {
        if (driver != 0 && driver != 2) return false;
        switch (place) {
            case Place::Head:
                return FromHead() == 0;
            case Place::FirstOf2:
                return driver == 2 && segment == 0;
            case Place::SecondOf2:
                return driver == 2 && segment == 1;
            case Place::LastTwoOf2:
                return driver == 2 && segment >= 0 && (FromHead() == 0 || FromHead() == 1);
            case Place::Chain:
                return InChain();
            case Place::Inner:
                return InChain() && (FromHead() == 1 || FromHead() == 2);
            case Place::NextToEnd:
                return InChain() && FromHead() == 1;
            case Place::End:
                return InChain() && FromHead() == 0;
            case Place::LastInChain:
                return InChain() && segment == count - 1;
        }
        return false;
    }
};

int ChainOf(int tool) {
    for (const ChainLength& row : kChainLengths) {
        if (row.tool == tool) return row.segments;
    }
    return 0;
}

}  // namespace

double StandardShapeSize::GetHeight() const {
    return std::abs(zDistHigh + zDistLow);
}

bool StandardShapeSize::Load(std::wstring_view text) {
    const COrvString items(text, L',', false);
    std::array<double, 6> read{};
    if (items.Size() != static_cast<int>(read.size())) return false;
    for (int i = 0; i < items.Size(); ++i) {
        if (!items.GetItem(i, read[static_cast<std::size_t>(i)])) return false;
    }
    xDistPort = read[0];
    xDistStarboard = read[1];
    yDistFore = read[2];
    yDistAft = read[3];
    zDistLow = read[4];
    zDistHigh = read[5];
    return true;
}

bool StandardShapeSize::Save(std::wstring& text) const {
    COrvString items(L',');
    for (const double metres : {xDistPort, xDistStarboard, yDistFore, yDistAft, zDistLow, zDistHigh}) items += metres;
    text = items.GetString();
    return true;
}

bool StandardShapeSize::Load(const FileObject* file, std::wstring_view section) {
    std::wstring text;
    return file && file->GetItem(section, kKey, text) && Load(text);
}

bool StandardShapeSize::Save(FileObject* file, std::wstring_view section) const {
    std::wstring text;
    return file && Save(text) && file->SetItem(section, kKey, text, true);
}

bool StandardShapeSize::Load(const CAttributeMap& attributes) {
    std::wstring text;
    return attributes.GetAttribValue(kKey, text) && Load(text);
}

bool StandardShapeSize::Save(CAttributeMap& attributes) const {
    std::wstring text;
    if (!Save(text)) return false;
    attributes.Add(kKey, kAttribString);
    return attributes.SetAttribValue(kKey, text);
}

void StandardShapeSize::SizeStandardShape(const CAttributeMap& attributes, int segment) {
    int count = 0, tool = -1, driver = 0, section = -1;
    COrvDouble3D vector;
    attributes.GetAttribValue(L"NumberOfSegments", count);
    attributes.GetAttribValue(L"DredgeToolType", tool);
    attributes.GetAttribValue(L"DriverVersion", driver);
    attributes.GetAttribValue(L"SegmentVector", segment, vector);
    attributes.GetAttribValue(L"SectionConfigType", segment, section);
    Measures measures = {.x = vector.X, .y = vector.Y, .z = vector.Z, .w = vector.X};
    attributes.GetAttribValue(L"EffectiveWidth", measures.w);
    attributes.GetAttribValue(L"EffectiveHeight", measures.h);
    attributes.GetAttribValue(L"PipeDiameter", measures.d);
    attributes.GetAttribValue(L"LadderLength", measures.l);
    attributes.GetAttribValue(L"CutterRadius", measures.r);

    const auto apply = [&](const Box& box) {
        const auto set = [&](const Size& size, double& side) {
            if (size.first != 0) side = size.Of(measures);
        };
        set(box.half, xDistPort);
        set(box.half, xDistStarboard);
        set(box.fore, yDistFore);
        set(box.aft, yDistAft);
        set(box.low, zDistLow);
        set(box.high, zDistHigh);
    };
    apply({.half = {'y', 0.5}, .fore = kZero, .aft = kY, .low = kY, .high = kZero});
    if (section >= 1) {
        for (const SectionRule& rule : kSectionRules) {
            if (Holds(rule.sections, section)) apply(rule.box);
        }
        return;
    }
    const Position position = {segment, count, driver, ChainOf(tool)};
    for (const ToolRule& rule : kToolRules) {
        if (Holds(rule.tools, tool) && position.Is(rule.place)) apply(rule.box);
    }
}

}  // namespace orv
