#include "definitions/DataDefinition.h"

#include <set>

#include "platform/os/ProgramPath.h"
#include "platform/service/BrandingConfig.h"
#include "platform/service/Translator.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

class Definition : public DataDefinition {
public:
    Definition() = default;
    explicit Definition(const std::string& text) { EXPECT_TRUE(Take(text)); }
    bool Take(const std::string& text) {
        return FileOpen(memfile(text.data(), text.size(), textencoding::utf8), L"d.ini");
    }
};

constexpr char kGroups[] =
    "[30]\nName=Sounder\nDescriptionText=One beam\nDescriptionText1=Two channels\nDataBlockSize=lArGe\nFileCache=TRUE\n"
    "RTAPortOffset=4\nFileID=SBES\nAttachmentPoints=Fore, Aft\n"
    "Item(0)=Time,T,103,8,23,100,0\nItem(1)= Depth , D ,103,8,2,200,5,12.75\n@.Item(1)=%.1f m\n"
    "Item(2)=Lock,L,104,1,0,99,0\nItem(3)=State,S,111,2,0,201\n@.Item(3)=Off, On,Tripped\n"
    "Item(4)=Bad,B,x,70000,-1\nSpareItem=1\n"
    "[x]\nFileID=SBES\n[1000]\nItem(0)=X,X,103,8,0,0\n[1999]\nBufferlength=60\n"
    "[2000]\nName=Set\nItem(0)=Never,N,103,8,0,0\nGroupId(0)=1000,a\nSpareGroupId(0)=30\nGroupId(1)=?\n"
    "[2001]\nName=Other\nDataBlockSize=none\n";

TEST(DataDefinition, GroupsUpToTheirBounds) {
    const Definition data(kGroups);
    const struct {
        unsigned group;
        const wchar_t *name, *description;  // null: the query fails
        int items, buffer, block;           // 0: fails
    } rows[] = {{30, L"Sounder", L"One beam", 5, 10, 1},
                {31, nullptr, nullptr, 0, 10, 0},
                {1999, nullptr, nullptr, 0, 60, 0},
                {2000, L"Set", nullptr, 3, 10, 0},
                {2001, nullptr, nullptr, 0, 0, -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.group);
        std::wstring name = L"?", description = L"?";
        int items = 0, buffer = 0, block = 7;
        EXPECT_EQ(data.GetGroupName(row.group, name), row.name != nullptr);
        EXPECT_EQ(name, row.name ? row.name : L"?");
        data.GetGroupDescription(row.group, -1, description);
        EXPECT_EQ(description, row.description ? row.description : L"?");
        data.GetGroupNumItems(row.group, items);
        EXPECT_EQ(items, row.items);
        EXPECT_EQ(data.GetGroupBufferlength(row.group, buffer), row.group <= 2000);
        EXPECT_EQ(buffer, row.buffer);
        EXPECT_EQ(data.GetGroupDataBlockSize(row.group, block), row.block != 0);
        EXPECT_EQ(block, row.block);
    }
    std::wstring text;
    EXPECT_TRUE(data.GetGroupDescription(30, 1, text) && text == L"Two channels");
    COrvString points(L';');
    EXPECT_TRUE(data.GetAttachmentPoints(30, points) && points.Size() == 2 && points[1] == L"Aft");
    bool cached = false, ignored = true;
    EXPECT_TRUE(data.GetGroupFileCache(30, cached) && cached);
    EXPECT_FALSE(data.GetIgnoreAttribChanges(30, ignored) || ignored);
    unsigned member = 5;
    EXPECT_TRUE(data.GetGroupItemGroup(2000, 0, member) && member == 1000);
    EXPECT_TRUE(data.GetSpareItemGroup(2000, 0, member) && member == 30);
    EXPECT_FALSE(data.GetGroupItemGroup(2000, 1, member) || data.GetGroupItemGroup(1000, 0, member) || member != 30);
}

TEST(DataDefinition, ItemsByIndexAndUse) {
    const Definition data(kGroups);
    std::wstring name = L"?", mnemonic = L"?";
    unsigned short type = 7, length = 7, format = 7;
    EXPECT_TRUE(data.GetGroupItemDef(30, 200, name, mnemonic, type, length, format));
    EXPECT_EQ(name + L"," + mnemonic, L"Depth,D");
    EXPECT_EQ(type * 1000 + length * 10 + format, 103082);
    // An item whose numbers are none gives its texts, and nothing is half filled.
    EXPECT_FALSE(data.GetGroupItemDef(30, 4, name, mnemonic, type, length, format));
    EXPECT_FALSE(data.GetGroupItemType(30, 4, type) || data.GetGroupItemLength(30, 4, length) ||
                 data.GetGroupItemFormat(30, 4, format) || data.GetGroupItemUseas(30, 4, format));
    EXPECT_EQ(name, L"Depth");
    EXPECT_EQ(type * 1000 + length * 10 + format, 103082);
    EXPECT_TRUE(data.GetGroupItemMnem(30, 4, name) && name == L"B");
    // 2000 has texts and no numbers.
    EXPECT_TRUE(data.GetGroupItemName(2000, 0, name) && name == L"Never");
    EXPECT_FALSE(data.GetGroupItemType(2000, 0, type));

    bool editable = false;
    EXPECT_TRUE(data.GetGroupItemEditable(30, 1, 5, editable) && editable);
    EXPECT_TRUE(data.GetGroupItemEditable(30, 1, 6, editable) && !editable);
    EXPECT_FALSE(data.GetGroupItemEditable(30, 3, 1, editable));
    double simulation = 7;
    int whole = 7;
    EXPECT_TRUE(data.GetGroupItemSimValDbl(30, 1, simulation) && data.GetGroupItemSimValInt(30, 1, whole));
    EXPECT_EQ(simulation * 100 + whole, 1287);
    EXPECT_TRUE(data.GetGroupItemSimValDbl(30, 0, simulation) && simulation == 0);
    EXPECT_FALSE(data.GetGroupItemSimValInt(30, 5, whole) || whole != 12);
}

TEST(DataDefinition, UseAsCodes) {
    std::string text = "[1]\n";
    const auto item = [&](int index, int useAs) {
        text += "Item(" + std::to_string(index) + ")=n,m" + std::to_string(index) + ",103,8,0," +
                std::to_string(useAs) + "\n";
    };
    for (int index = 0; index < 100; ++index) item(index, index == 4 || index == 90 ? 300 : index);
    item(100, 400);  // out of reach: 100 is a code
    item(60000, 500);
    item(60001, 59999);
    const Definition data(text);
    const struct {
        unsigned short code, index;
    } rows[] = {{99, 99},       {100, 65535}, {300, 90},      {400, 65535},   {500, 60000},
                {59999, 60001}, {4, 4},       {60000, 60000}, {65535, 65535}, {77, 77}};
    for (const auto& row : rows) EXPECT_EQ(data.UseAsCodeToIndex(1, row.code), row.index) << row.code;
    std::wstring mnemonic = L"?";
    EXPECT_TRUE(data.GetGroupItemMnem(1, 500, mnemonic) && mnemonic == L"m60000");
    EXPECT_FALSE(data.GetGroupItemMnem(1, 501, mnemonic) || data.GetGroupItemMnem(9, 500, mnemonic));
}

TEST(DataDefinition, TextsOfValues) {
    const Definition data(kGroups);
    const struct {
        unsigned short code;
        int value;
        const wchar_t* text;
    } rows[] = {{3, 1, L"On"},  {201, 2, L"Tripped"}, {3, 3, L""}, {3, -1, L""}, {2, 0, L"No"},
                {2, 1, L"Yes"}, {2, 2, L""},          {0, 1, L""}, {9, 0, L""}};
    for (const auto& row : rows) {
        std::wstring text = L"?";
        EXPECT_EQ(data.GetGroupItemMapTxt(30, row.code, row.value, text), *row.text != 0) << row.code;
        EXPECT_EQ(text, row.text);
    }
    std::wstring text = L"?";
    EXPECT_FALSE(data.GetGroupItemDoubleToStr(2001, 0, 1, text) || text != L"?");
    EXPECT_FALSE(data.GetGroupItemDoubleToStr(30, 0, 1, text) || text != L" ");
    EXPECT_TRUE(data.GetGroupItemDoubleToStr(30, 200, 3.14159, text) && text == L"3.1 m");
    std::string type;
    EXPECT_TRUE(DataDefinition::GetTypeInStringFormat(605, type) && type == "long array");
    EXPECT_FALSE(DataDefinition::GetTypeInStringFormat(108, type) || type != "long array");
}

TEST(DataDefinition, CountsGroups) {
    Definition data(kGroups);
    unsigned group = 5;
    EXPECT_FALSE(data.GetGroupIdByIndex(1, group));  // the index comes with the first count
    EXPECT_EQ(data.GetNumDevices(), 2);              // a section that is no number counts as device 0
    EXPECT_EQ(data.GetNumComps(), 2);
    EXPECT_TRUE(data.GetGroupIdByIndex(1, group) && group == 30);
    EXPECT_TRUE(data.GetGroupIdByIndex(2, group) && group == 0);
    EXPECT_FALSE(data.GetGroupIdByIndex(0, group) || data.GetGroupIdByIndex(3, group));
    EXPECT_TRUE(data.GetGroupIdByFileId(L"SBES", group) && group == 0);  // the later one
    EXPECT_FALSE(data.GetGroupIdByFileId(L"sbes", group));
}

TEST(DataDefinition, SpeaksTheUsersLanguage) {
    Translator::Lookups lookups;
    lookups.dataDef = [](std::wstring_view section, std::wstring_view key) -> std::wstring {
        if (section != L"30") return {};
        return key == L"Item(1)" ? L"Tiefe,X" : key == L"@.Item(3)" ? L"Aus,Ein" : L"";
    };
    lookups.resource = [](std::wstring_view id) { return std::wstring(id == L"Yes" ? L"Ja" : L""); };
    Translator::Instance().Activate(lookups);
    const Definition data(kGroups);
    std::wstring name, mnemonic, on, yes, no, group;
    unsigned short number = 0;
    data.GetGroupItemName(30, 1, name);
    data.GetGroupItemMapTxt(30, 3, 1, on);
    data.GetGroupItemMapTxt(30, 2, 1, yes);
    data.GetGroupItemMapTxt(30, 2, 0, no);
    data.GetGroupName(30, group);
    EXPECT_EQ(name + on + yes + no + group, L"TiefeEinJaNoSounder");
    data.GetGroupItemDef(30, 1, name, mnemonic, number, number, number);
    EXPECT_EQ(name + mnemonic, L"DepthD");
    Translator::Instance().Deactivate();
}

TEST(DataDefinition, OpensBesideTheProgramOnce) {
    const test::TempFolder folder;
    SetProgramPath(folder / L"surveyor");
    Definition data;
    std::wstring name;
    EXPECT_FALSE(data.Initialise() || data.GetGroupName(30, name) || data.GetNumDevices() != 0);
    test::WriteBytes(folder / L"DataDefinition.ini", kGroups);
    EXPECT_TRUE(data.Initialise() && data.GetGroupName(30, name));
    BrandingConfig::Instance().SetAppNameShort(L"Dredge");
    test::WriteBytes(folder / L"DataDefinitionDredge.ini", "[30]\nName=Own\n");
    DataDefinitionMolby& own = DataDefinitionMolby::GetDataDefinitionMolby();
    EXPECT_TRUE(own.InitialiseMolby() && own.GetGroupName(30, name) && name == L"Own");
    BrandingConfig::Instance().SetAppNameShort(L"Orv");
    SetProgramPathMissing();
    EXPECT_FALSE(Definition().Initialise());
    EXPECT_TRUE(data.Initialise());  // read already
    SetProgramPath(L"");
}

TEST(DataDefinition, OneLockForAll) {
    const Definition data(kGroups);
    int inside = 0;
    test::InEightThreads([&](unsigned) {
        for (int round = 0; round < 2000; ++round) {
            data.Lock();
            const int before = inside;
            std::wstring name;
            unsigned short type = 0;
            EXPECT_TRUE(data.GetGroupItemName(30, 200, name) && data.GetGroupItemType(30, 201, type));
            inside = before + 1;  // nobody came in between
            data.Unlock();
        }
    });
    EXPECT_EQ(inside, 16000);
}

// What an installation ships must answer what hosts ask.
TEST(DataDefinition, ShippedFile) {
    Definition data;
    ASSERT_TRUE(data.FileOpen(FromUtf8(ORV_SOURCE_DIR "/data/DataDefinition.ini"), kOpenRead));
    std::set<std::wstring> fileIds, names;
    FobjSection cursor;
    std::wstring section, text;
    for (bool more = data.GetFirstSectionEntry(cursor, section); more;
         more = data.GetNextSectionEntry(cursor, section)) {
        SCOPED_TRACE(ToUtf8(section));
        const unsigned group = ParseUnsigned(section).value();
        int items = 0;
        ASSERT_TRUE(data.GetGroupNumItems(group, items) && items > 0 && data.GetItem(section, L"Name", text));
        EXPECT_TRUE(names.insert(text).second);
        EXPECT_EQ(data.GetGroupFileId(group, text) && fileIds.insert(text).second, group < 1000);
        unsigned member = 0;
        for (unsigned n = 0; data.GetGroupItemGroup(group, n, member) || data.GetSpareItemGroup(group, n, member); ++n)
            EXPECT_TRUE(data.HasSection(IntText(member))) << member;
        for (int index = 0; group < 2000 && index < items; ++index) {
            const auto code = static_cast<unsigned short>(index);
            std::wstring name, mnemonic;
            unsigned short type = 0, length = 0, format = 0, useAs = 0;
            std::string typeText;
            double simulation = 0;
            EXPECT_TRUE(data.GetGroupItemDef(group, code, name, mnemonic, type, length, format)) << index;
            EXPECT_TRUE(DataDefinition::GetTypeInStringFormat(type, typeText) && length > 0) << index;
            EXPECT_TRUE(data.GetGroupItemUseas(group, code, useAs)) << index;
            EXPECT_EQ(useAs == 0 ? code : data.UseAsCodeToIndex(group, useAs), code) << "used twice: " << useAs;
            data.GetGroupItemSimValDbl(group, code, simulation);
            if (format == 25 && type < 600) {  // an enumeration
                EXPECT_TRUE(data.GetGroupItemMapTxt(group, code, static_cast<int>(simulation), text)) << index;
            }
        }
    }
    EXPECT_GT(data.GetNumDevices(), 30);
}

}  // namespace
}  // namespace orv
