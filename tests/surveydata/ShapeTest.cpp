#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/FileObject.h"
#include "platform/attributes/CAttributeMap.h"
#include "surveydata/ShapeSelection.h"
#include "surveydata/StandardShapeSize.h"

namespace orv {
namespace {

using Items = std::vector<std::pair<std::wstring, std::wstring>>;

std::wstring TextOf(const ShapeSelection& shape) {
    std::wstring text;
    return shape.Save(text) ? text : L"none";
}

CAttributeMap Attributes(const Items& items) {
    FileObject file;
    file.CreateSection(L"S", true);
    for (const auto& [name, value] : items) file.SetItem(L"S", L"@tr.dev." + name, L"0," + value, true);
    CAttributeMap attributes;
    attributes.SetGroup(L"dev");
    EXPECT_TRUE(attributes.LoadFromFObj(file, L"S", false, false, false));
    return attributes;
}

TEST(ShapeSelection, Texts) {
    const std::tuple<const wchar_t*, bool, const wchar_t*> rows[] = {
        {L"0,1,0,1,std,two,three,4", true, L"0,1,0,1,std,two,three,4"},
        {L"1,2,1,0,std,two,three", true, L"1,2,1,0,std,two,three,7"},
        {L"1,2,1,0,std,two,three,Tug", true, L"1,2,1,0,std,two,three,2"},
        {L" 1, 2,1 ,0, std ,two,three ,Tug", true, L"1,2,1,0,std,two,three,2"},
        {L"1,2,1,0,std,two,three,tug", true, L"1,2,1,0,std,two,three,7"},
        {L"1,2,1,0,std,two", false, L"0,1,0,1,,,,7"},
        {L"1,2,x,0,std,two,three,4", false, L"0,1,0,1,,,,7"},
    };
    for (const auto& [text, good, after] : rows) {
        ShapeSelection shape;
        shape.SetStandardShapeGroup(7);
        EXPECT_EQ(shape.Load(text), good) << text;
        EXPECT_EQ(TextOf(shape), after) << text;
    }
    ShapeSelection shape;
    shape.Set2DShape(L"two");
    shape.Set3DShape(L"three");
    shape.Set3DShapeType(2);
    EXPECT_TRUE(shape.Get2DShape() == L"three" && shape.Get2DShapeType() == 3);
    shape.Set3DShapeType(2147483647);
    EXPECT_EQ(shape.Get2DShapeType(), 2147483647);
    shape.SetUseSameShape(false);
    EXPECT_TRUE(shape.Get2DShape() == L"two" && shape.Get2DShapeType() == 1);
    shape.Set2DShape(L"a,b");
    EXPECT_EQ(TextOf(shape), L"none");
    EXPECT_FALSE(shape.Load(static_cast<const FileObject*>(nullptr), L"S"));
}

TEST(ShapeSelection, OldVessels) {
    const std::tuple<Items, const wchar_t*> rows[] = {
        {{{L"VesselContour", L"c"}}, L"1,0,0,0,,c,,-1"},
        {{{L"VesselContour", L"c"}, {L"VesselWireframe", L"w"}}, L"1,1,0,1,,w,w,-1"},
        {{{L"VesselWireframe", L"w"}}, L"0,1,0,1,,,,-1"},
        {{{L"VesselContour", L"c"},
          {L"VesselWireframe", L"w"},
          {L"3DStudioModel", L"s"},
          {L"2DModelType", L"0"},
          {L"3DModelType", L"1"}},
         L"1,0,1,0,,c,s,-1"},
        {{{L"VesselContour", L"c"}, {L"VesselWireframe", L"w"}, {L"2DModelType", L"0"}, {L"3DModelType", L"1"}},
         L"0,1,0,1,,,,-1"},
    };
    for (const auto& [items, text] : rows) {
        FileObject file;
        for (const auto& [key, value] : items) file.SetItem(L"GEOMETRY", key, value, true);
        ShapeSelection shape;
        shape.Load(&file, L"GEOMETRY");
        EXPECT_EQ(TextOf(shape), text);
    }
}

TEST(ShapeSelection, OldTools) {
    const std::tuple<Items, int, const wchar_t*> rows[] = {
        {{{L"DredgeHeadShape", L"h"}}, 0, L"1,0,0,0,,h,,-1"},
        {{{L"DredgeHeadShape", L"h"}}, 2, L"0,1,0,1,,,,-1"},
        {{{L"Section2Shape", L"s"}, {L"WireframeName(2)", L"w"}}, 2, L"1,1,0,1,,w,w,-1"},
        {{{L"DriverVersion", L"2"},
          {L"SectionShape(1)", L"s"},
          {L"SketchUpModel(1)", L"k"},
          {L"2DModelType(1)", L"3"},
          {L"3DModelType(1)", L"2"}},
         1,
         L"1,3,2,1,,k,k,-1"},
        {{{L"DriverVersion", L"2"}, {L"SectionShape(0)", L"s"}, {L"3DStudioModel", L"m"}, {L"3DModelType", L"1"}},
         0,
         L"1,0,1,0,,s,m,-1"},
        {{{L"DredgeHeadShape", L"h"}, {L"3DModelType", L"2147483647"}}, 0, L"1,0,2147483647,0,,h,,-1"},
        {{{L"ShapeSelection(3)", L"0,0,0,0,,a,b,5"}}, 3, L"0,0,0,0,,a,b,5"},
    };
    for (const auto& [items, segment, text] : rows) {
        ShapeSelection shape;
        shape.Load(Attributes(items), segment);
        EXPECT_EQ(TextOf(shape), text);
    }
    CAttributeMap attributes = Attributes({});
    ShapeSelection shape, again;
    shape.SetStandardShape(L"Crown");
    EXPECT_TRUE(shape.Save(attributes, 4) && again.Load(attributes, 4));
    EXPECT_EQ(shape, again);
}

TEST(StandardShapeSize, TextsAndShifts) {
    StandardShapeSize size, other;
    std::wstring text;
    EXPECT_TRUE(size.Load(L"1,2,3,5,8,-13"));
    EXPECT_FALSE(size.Load(L"1,2,3,5,8") || size.Load(L"1,2,3,5,8,13,21") || size.Load(L"0,0,0,0,0,x"));
    EXPECT_TRUE(size.Save(text) && text == L"1,2,3,5,8,-13");
    EXPECT_TRUE(size.GetLength() == 8 && size.GetWidth() == 3 && size.GetHeight() == 5);
    EXPECT_TRUE(size.GetXShift() == 0.5 && size.GetYShift() == 1 && size.GetZShift() == -10.5);
    EXPECT_TRUE(other.Save(text) && text == L"0.5,0.5,0,1,1,0");
}

// Vector 3,5,7, width 11, height 13, diameter 17, ladder 19, radius 23; the text is port, starboard, fore, aft, low,
// high. Rows name the kind of segment, or 0 and the kind of tool, the version, the segment and their number.
TEST(StandardShapeSize, BoxesOfSegmentsAndTools) {
    constexpr const wchar_t *kBase = L"2.5,2.5,0,5,5,0", *kHalf = L"5.5,5.5,0,5,5,0", *kLink = L"-3.5,-3.5,0,-7,-7,0",
                            *kInner = L"-3.5,-3.5,0,11,-7,0", *kDragHead = L"8.5,8.5,5,16,11,0";
    struct Row {
        int section, tool, version, segment, count;
        const wchar_t* box;
    };
    // clang-format off
    const Row rows[] = {
        {1, 4, 2, 0, 3, kLink}, {3, -1, 0, 0, 1, kInner}, {14, -1, 0, 0, 1, L"5.5,5.5,0,5,11,0"},
        {48, -1, 0, 0, 1, kHalf}, {26, -1, 0, 0, 1, L"5.5,5.5,0,11,5,0"}, {27, 0, 0, 0, 1, kBase},
        {30, -1, 0, 0, 1, L"-5.5,-5.5,0,11,-7,0"}, {50, -1, 0, 0, 1, kHalf}, {52, -1, 0, 0, 1, L"5.5,5.5,0,-5,-7,0"},
        {54, 0, 0, 0, 1, kBase}, {65, 0, 0, 0, 1, kBase}, {0, 0, 0, 0, 3, kHalf}, {0, 0, 0, 2, 3, kBase},
        {0, 0, 2, 2, 3, kHalf}, {0, 0, 2, 0, 3, kBase}, {0, 0, 1, 0, 1, kBase},
        {-1, 21, 0, 0, 1, L"-5.5,-5.5,0,11,-7,0"}, {0, 11, 2, 0, 1, L"5.5,5.5,0,5,11,0"}, {0, 14, 0, 0, 1, kBase},
        {0, 25, 0, 0, 1, kBase}, {0, 4, 0, 0, 2, kBase}, {0, 4, 2, 0, 2, L"8.5,8.5,0,19,17,0"},
        {0, 4, 2, 1, 2, L"23,23,0,46,46,0"}, {0, 4, 2, 2, 3, kBase}, {0, 22, 2, 2, 4, L"5.5,5.5,6.5,6.5,-7,0"},
        {0, 22, 2, 1, 4, kBase}, {0, 22, 0, 0, 1, kBase}, {0, 6, 0, 0, 6, kLink}, {0, 6, 0, 1, 6, kInner},
        {0, 6, 0, 2, 6, kInner}, {0, 6, 0, 3, 6, kLink}, {0, 6, 0, 5, 6, kBase}, {0, 6, 2, 0, 6, kBase},
        {0, 6, 2, 3, 6, kInner}, {0, 6, 2, 4, 6, kInner}, {0, 6, 2, 5, 6, kLink}, {0, 6, 1, 0, 6, kBase},
        {0, 18, 0, 0, 2, kLink}, {0, 18, 0, 1, 2, kBase}, {0, 20, 0, 0, 3, kDragHead}, {0, 20, 2, 2, 3, kDragHead},
        {0, 20, 2, 1, 3, kLink}, {0, 24, 0, 0, 3, L"5.5,5.5,0,-5,-7,0"}, {0, 24, 0, 1, 3, L"5.5,5.5,0,-7,-7,0"},
        {0, 24, 2, 1, 3, L"5.5,5.5,0,-7,-7,0"}, {0, 26, 2, 2, 3, L"5.5,5.5,0,11,-7,0"},
        {0, 26, 0, 2, 3, L"5.5,5.5,0,11,-7,0"}, {0, 26, 0, 0, 3, kLink}, {0, 27, 0, 1, 6, kInner},
        {0, 27, 2, 5, 6, kDragHead}, {0, 31, 0, 1, 3, kHalf}, {0, 31, 0, 2, 3, kBase},
    };
    // clang-format on
    for (const Row& row : rows) {
        const std::wstring index = row.segment == 0 ? L"" : L"(" + std::to_wstring(row.segment) + L")";
        const CAttributeMap attributes = Attributes({{L"NumberOfSegments", std::to_wstring(row.count)},
                                                     {L"DredgeToolType", std::to_wstring(row.tool)},
                                                     {L"DriverVersion", std::to_wstring(row.version)},
                                                     {L"SectionConfigType" + index, std::to_wstring(row.section)},
                                                     {L"SegmentVector" + index, L"3,5,7"},
                                                     {L"EffectiveWidth", L"11"},
                                                     {L"EffectiveHeight", L"13"},
                                                     {L"PipeDiameter", L"17"},
                                                     {L"LadderLength", L"19"},
                                                     {L"CutterRadius", L"23"}});
        StandardShapeSize size;
        std::wstring text;
        size.SizeStandardShape(attributes, row.segment);
        EXPECT_TRUE(size.Save(text));
        EXPECT_EQ(text, row.box) << "segment kind " << row.section << ", tool " << row.tool << ", version "
                                 << row.version << ", segment " << row.segment << " of " << row.count;
    }
    StandardShapeSize narrow;
    narrow.SizeStandardShape(Attributes({{L"SectionConfigType", L"18"}, {L"SegmentVector", L"3,5,7"}}), 0);
    EXPECT_EQ(narrow.GetXDistPort(), 1.5) << "without a width the vector's X is it";
}

}  // namespace
}  // namespace orv
