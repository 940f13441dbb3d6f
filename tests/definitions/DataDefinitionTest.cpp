#include "definitions/DataDefinition.h"

#include <set>
#include <sstream>

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
    explicit Definition(const std::string& text) {
        EXPECT_TRUE(FileOpen(memfile(text.data(), text.size(), textencoding::utf8), L"d.ini"));
    }
};

std::string TextOf(const std::wstring& value) {
    return ToUtf8(value);
}
template <class Number>
std::string TextOf(Number value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

/// The answer of a query and a blank; "-" in place of a failed one that left its output alone, "!" before one that
/// didn't.
template <class T, class Query>
std::string Answer(T out, Query query) {
    const T before = out;
    const bool good = query(out);
    return (good ? TextOf(out) : out == before ? "-" : "!" + TextOf(out)) + " ";
}

std::string AskGroup(const DataDefinition& data, unsigned group) {
    const std::wstring text = L"~";
    const auto ask = [&](auto out, auto query) {
        return Answer(out, [&](auto& to) { return (data.*query)(group, to); });
    };
    const auto first = [&](auto query) { return Answer(5u, [&](auto& to) { return (data.*query)(group, 0, to); }); };
    return ask(text, &DataDefinition::GetGroupName) +
           Answer(text, [&](auto& to) { return data.GetGroupDescription(group, -1, to); }) +
           Answer(text, [&](auto& to) { return data.GetGroupDescription(group, 1, to); }) +
           ask(7, &DataDefinition::GetGroupNumItems) + ask(7, &DataDefinition::GetGroupDataBlockSize) +
           ask(true, &DataDefinition::GetGroupFileCache) + ask(7, &DataDefinition::GetRTAPortOffset) +
           ask(7, &DataDefinition::GetGroupBufferlength) + first(&DataDefinition::GetGroupItemGroup) +
           first(&DataDefinition::GetSpareItemGroup);
}

std::string AskItem(const DataDefinition& data, unsigned group, unsigned short code) {
    const std::wstring text = L"~";
    const unsigned short number = 7;
    const auto ask = [&](auto out, auto query) {
        return Answer(out, [&](auto& to) { return (data.*query)(group, code, to); });
    };
    const auto editable = [&](int flags) {
        return Answer(7, [&](int& to) {
            bool out = false;
            const bool good = data.GetGroupItemEditable(group, code, flags, out);
            if (good) to = out;
            return good;
        });
    };
    std::wstring name = L"~", mnemonic = L"~";
    const std::string whole = Answer(number, [&](unsigned short& to) {
        unsigned short length = 7, format = 7;
        return data.GetGroupItemDef(group, code, name, mnemonic, to, length, format) || length + format != 14;
    });
    return ask(text, &DataDefinition::GetGroupItemName) + ask(text, &DataDefinition::GetGroupItemMnem) +
           ask(number, &DataDefinition::GetGroupItemType) + ask(number, &DataDefinition::GetGroupItemLength) +
           ask(number, &DataDefinition::GetGroupItemFormat) + ask(number, &DataDefinition::GetGroupItemUseas) +
           editable(5) + editable(2) + ask(7.0, &DataDefinition::GetGroupItemSimValDbl) +
           ask(7, &DataDefinition::GetGroupItemSimValInt) + ToUtf8(name + mnemonic) + whole +
           Answer(text, [&](auto& to) { return data.GetGroupItemMapTxt(group, code, 1, to); }) +
           Answer(text, [&](auto& to) { return data.GetGroupItemDoubleToStr(group, code, 2.25, to); });
}

constexpr char kGroups[] =
    "[30]\nName=Sounder\nDescriptionText=One\nDescriptionText1=Two\nDataBlockSize=lArGe\nFileCache=tRUE\n"
    "RTAPortOffset=4\nFileID=SBES\nAttachmentPoints=Fore, Aft\n"
    "Item(0)=Time,T,103,8,23,100,0\nItem(1)= Depth , D ,103,8,2,200,5,12.75\n@.Item(1)=%.1fm\n"
    "Item(2)=Lock,L,104,1,0,99,0\nItem(3)=State,S,111,2,0,201\n@.Item(3)=Off, On,Tripped\n"
    "Item(4)=Bad,B,x,70000,-1\nSpareItem=1\n"
    "[x]\nFileID=SBES\n[1000]\nItem(0)=X,X,103,8,0,0\n[1999]\nBufferlength=60\n"
    "[2000]\nName=Set\nItem(0)=Never,N,104,8,0,0\nGroupId(0)=1000,a\nSpareGroupId(0)=30\nGroupId(1)=?\n"
    "[2001]\nName=Other\nDataBlockSize=none\n[2002]\nDataBlockSize=Compressed\n[2003]\nDataBlockSize=Huge\n";

TEST(DataDefinition, AnswersUpToItsBounds) {
    const Definition data(kGroups);
    const struct {
        unsigned group;
        const char* answers;
    } groups[] = {
        {30, "Sounder One Two 5 1 1 4 10 - - "}, {31, "- - - - !0 !0 - 10 - - "}, {1999, "- - - 0 !0 !0 - 60 - - "},
        {2000, "Set - - 3 !0 !0 - 10 1000 30 "},  // has texts and members
        {2001, "- - - 0 -1 !0 - - - - "},        {2002, "- - - 0 2 !0 - - - - "}, {2003, "- - - 0 0 !0 - - - - "}};
    for (const auto& row : groups) EXPECT_EQ(AskGroup(data, row.group), row.answers) << row.group;
    const struct {
        unsigned group;
        unsigned short code;
        const char* answers;
    } items[] = {{30, 0, "Time T 103 8 23 100 0 0 0 0 TimeT103 ! !  "},
                 {30, 200, "Depth D 103 8 2 200 1 0 12.75 12 DepthD103 ! 2.2m "},
                 {30, 2, "Lock L 104 1 0 99 0 0 0 0 LockL104 Yes !  "},
                 {30, 201, "State S 111 2 0 201 - - 0 0 StateS111 On Off, On,Tripped "},
                 {30, 4, "Bad B - - - - - - 0 0 ~~- ! !  "},
                 {30, 5, "- - - - - - - - - - ~~- ! !  "},
                 {2000, 0, "Never N - - - - - - - - ~~- ! !  "},
                 {2001, 0, "- - - - - - - - - - ~~- ! - "}};
    for (const auto& row : items) EXPECT_EQ(AskItem(data, row.group, row.code), row.answers) << row.group;
}

TEST(DataDefinition, TypesHaveNames) {
    std::string names;
    for (unsigned type = 100; type <= 608; type = type == 112 ? 600 : type + 1) {
        std::string name = "-";
        DataDefinition::GetTypeInStringFormat(type, name);
        names += name + " ";
    }
    EXPECT_EQ(names,
              "- int uint double bool char uchar long - float short ushort - - bool array char array int array "
              "short array long array float array double array - ");
}

TEST(DataDefinition, UseAsCodes) {
    std::string text = "[1]\n";
    const auto item = [&](int index, int useAs) {
        text += "Item(" + std::to_string(index) + ")=n,m,103,8,0," + std::to_string(useAs) + "\n";
    };
    for (int index = 0; index < 100; ++index) item(index, index == 4 || index == 90 ? 300 : index);
    item(100, 400);  // out of reach: 100 is a code
    item(60000, 500);
    item(60001, 59999);
    const Definition data(text);
    constexpr unsigned short kRows[][2] = {{99, 99},       {100, 65535}, {300, 90},      {400, 65535},  {500, 60000},
                                           {59999, 60001}, {4, 4},       {60000, 60000}, {65535, 65535}};
    for (const auto& [code, index] : kRows) EXPECT_EQ(data.UseAsCodeToIndex(1, code), index) << code;
}

TEST(DataDefinition, CountsGroups) {
    Definition data(kGroups);
    unsigned group = 5;
    EXPECT_FALSE(data.GetGroupIdByIndex(1, group));  // the index comes with the first count
    EXPECT_EQ(data.GetNumDevices(), 2);              // a section that is no number counts as device 0
    EXPECT_EQ(data.GetNumComps(), 2);
    EXPECT_TRUE(data.GetGroupIdByIndex(1, group) && group == 30);
    EXPECT_FALSE(data.GetGroupIdByIndex(0, group) || data.GetGroupIdByIndex(3, group));
    EXPECT_TRUE(data.GetGroupIdByFileId(L"SBES", group) && group == 0);  // the later one
    EXPECT_FALSE(data.GetGroupIdByFileId(L"sbes", group));
    COrvString points(L';');
    EXPECT_TRUE(data.GetAttachmentPoints(30, points) && points.Size() == 2 && points[1] == L"Aft");
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
    EXPECT_EQ(AskItem(data, 30, 200).substr(0, 12), "Tiefe D 103 ");
    EXPECT_NE(AskItem(data, 30, 200).find("DepthD103"), std::string::npos);  // the definition as it stands
    EXPECT_NE(AskItem(data, 30, 201).find(" Ein "), std::string::npos);
    EXPECT_NE(AskItem(data, 30, 2).find(" Ja "), std::string::npos);
    EXPECT_EQ(AskGroup(data, 30).substr(0, 8), "Sounder ");
    Translator::Instance().Deactivate();
}

TEST(DataDefinition, OpensBesideTheProgramOnce) {
    const test::TempFolder folder;
    SetProgramPath(folder / L"surveyor");
    Definition data;
    std::wstring name;
    EXPECT_FALSE(data.Initialise() || data.GetGroupName(30, name) || data.GetNumDevices() != 0);
    test::WriteBytes(folder / L"DataDefinition.ini", kGroups);
    test::WriteBytes(folder / L"DataDefinitionOrv.ini", "[30]\nName=Own\n");
    EXPECT_TRUE(data.Initialise() && data.GetGroupName(30, name));
    DataDefinitionMolby& own = DataDefinitionMolby::GetDataDefinitionMolby();
    EXPECT_TRUE(own.InitialiseMolby() && own.GetGroupName(30, name) && name == L"Own");
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
            unsigned short type = 0;
            EXPECT_TRUE(data.GetGroupItemType(30, 201, type));
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
    std::set<std::wstring> fileIds;
    for (unsigned group = 0; group < 3000; ++group) {
        SCOPED_TRACE(group);
        int items = 0;
        if (!data.GetGroupNumItems(group, items)) continue;
        std::wstring text, name;
        EXPECT_EQ(data.GetGroupFileId(group, text) && fileIds.insert(text).second, group < 1000);
        for (unsigned short index = 0; group < 2000 && index < items; ++index) {
            unsigned short type = 0, length = 0, format = 0, useAs = 0;
            std::string typeText;
            int simulation = 0;
            EXPECT_TRUE(data.GetGroupItemDef(group, index, name, text, type, length, format)) << index;
            EXPECT_TRUE(DataDefinition::GetTypeInStringFormat(type, typeText) && length > 0) << index;
            EXPECT_TRUE(data.GetGroupItemUseas(group, index, useAs)) << index;
            EXPECT_EQ(useAs == 0 ? index : data.UseAsCodeToIndex(group, useAs), index) << "used twice: " << useAs;
            data.GetGroupItemSimValInt(group, index, simulation);
            const bool enumeration = format == 25 && type < kTypeBoolArray;
            EXPECT_TRUE(!enumeration || data.GetGroupItemMapTxt(group, index, simulation, text)) << index;
        }
        unsigned member = 1000;
        for (unsigned n = 0; data.GetGroupItemGroup(group, n, member) || data.GetSpareItemGroup(group, n, member);
             ++n) {
            EXPECT_TRUE(data.HasSection(IntText(member))) << member;
        }
    }
    EXPECT_GT(fileIds.size(), 30u);
}

}  // namespace
}  // namespace orv
