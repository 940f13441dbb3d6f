#include "definitions/DataDefinition.h"

#include <array>
#include <charconv>
#include <mutex>
#include <optional>

#include "core/ConfigKeys.h"
#include "core/ConfigText.h"
#include "platform/os/ProgramPath.h"
#include "platform/service/BrandingConfig.h"
#include "platform/service/Translator.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Format.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "platform/values/TruncToInt.h"

namespace orv {

namespace {

// Ids. 2000 is a composite, and yet it has texts: hosts ask it for its name by the rule of the computations.
constexpr unsigned kFirstComp = 1000, kFirstComposite = 2000, kLastWithTexts = 2000;

// Codes from 100 to 59999 say what an item is used as; all others are its index.
constexpr unsigned kFirstUseAs = 100, kLastUseAs = 59999, kNoIndex = 65535;

constexpr int kDefaultBufferlength = 10;
constexpr unsigned kDeviceImage = 5127;
constexpr std::string_view kFileIdKey = "FileID";

// Fields of an item.
enum Field { kName, kMnemonic, kType, kLength, kFormat, kUseAs, kEditable, kSimulation };

/// A section or key with a number in it, on the stack.
class Numbered {
public:
    explicit Numbered(unsigned number) { Put(number); }
    Numbered(std::string_view before, unsigned number, std::string_view after) {
        Put(before);
        Put(number);
        Put(after);
    }
    std::string_view View() const { return {room.data(), size}; }

private:
    void Put(std::string_view text) { size += text.copy(room.data() + size, room.size() - size); }
    void Put(unsigned number) {
        const auto end = std::to_chars(room.data() + size, room.data() + room.size(), number).ptr;
        size = static_cast<std::size_t>(end - room.data());
    }
    std::array<char, 40> room;
    std::size_t size = 0;
};

Numbered ItemKey(unsigned index) {
    return {"Item(", index, ")"};
}

Numbered MapKey(unsigned index) {
    return {"@.Item(", index, ")"};
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

/// Field of a comma list, without blanks at its ends. An empty list has none.
std::optional<std::string_view> FieldOf(std::string_view list, int field) {
    if (list.empty()) return std::nullopt;
    for (; field > 0; --field) {
        const std::size_t comma = list.find(',');
        if (comma == std::string_view::npos) return std::nullopt;
        list.remove_prefix(comma + 1);
    }
    return Trimmed(list.substr(0, list.find(',')));
}

bool TakeUnsigned16(std::string_view list, int field, unsigned short& out) {
    const std::optional<std::string_view> text = FieldOf(list, field);
    const std::optional<unsigned> number = text ? ParseUnsigned(*text) : std::nullopt;
    if (!number || *number > 0xFFFF) return false;
    out = static_cast<unsigned short>(*number);
    return true;
}

bool TakeText(std::string_view list, int field, std::wstring& out) {
    const std::optional<std::string_view> text = FieldOf(list, field);
    if (text) FromUtf8(*text, out);
    return text.has_value();
}

double SimulationValue(std::string_view list) {
    const std::optional<std::string_view> text = FieldOf(list, kSimulation);
    return text ? ParseDouble(*text).value_or(0) : 0;
}

/// The user's words for a text of the file; its own where there are none.
void Translate(std::string_view section, std::string_view key, std::wstring& text) {
    const Translator& translator = Translator::Instance();
    if (!translator.IsActive()) return;
    std::wstring translated = translator.GetDataDefString(FromUtf8(section), FromUtf8(key));
    if (!translated.empty()) text = std::move(translated);
}

std::wstring YesOrNo(bool yes) {
    const std::wstring_view word = yes ? L"Yes" : L"No";
    std::wstring translated = Translator::Instance().GetResourceString(word);
    return translated.empty() ? std::wstring(word) : translated;
}

// A section whose name is no number counts as group 0, as the suite's devices always have.
int IdOf(const ConfigText& content, std::uint32_t section) {
    return ParseLeadingInt(FromUtf8(content.SectionName(section)));
}

template <class Visit>
void ForEachGroup(const ConfigText& content, Visit visit) {
    for (auto at = content.FirstSection(); at != ConfigText::kNone; at = content.NextSection(at)) {
        visit(IdOf(content, at), at);
    }
}

struct TypeName {
    unsigned type;
    const char* text;
};
constexpr TypeName kTypeNames[] = {
    {kTypeInt, "int"},
    {kTypeUint, "uint"},
    {kTypeDouble, "double"},
    {kTypeBool, "bool"},
    {kTypeChar, "char"},
    {kTypeUchar, "uchar"},
    {kTypeLong, "long"},
    {kTypeFloat, "float"},
    {kTypeShort, "short"},
    {kTypeUshort, "ushort"},
    {kTypeBoolArray, "bool array"},
    {kTypeCharArray, "char array"},
    {kTypeIntArray, "int array"},
    {kTypeShortArray, "short array"},
    {kTypeLongArray, "long array"},
    {kTypeFloatArray, "float array"},
    {kTypeDoubleArray, "double array"},
};

using Guard = std::lock_guard<CriticalSection>;

}  // namespace

DataDefinition::DataDefinition() = default;
DataDefinition::~DataDefinition() = default;

DataDefinition& DataDefinition::GetDataDefinition() {
    static DataDefinition instance;
    return instance;
}

bool DataDefinition::Initialise() {
    return InitialiseFrom(DATA_DEF_FILENAME);
}

bool DataDefinition::InitialiseFrom(std::wstring_view name) {
    if (FileInitialised()) return true;
    std::wstring program;
    if (!GetProgramPath(program)) return false;
    std::wstring folder = GetFolderFromPath(program);
    CheckAppPathForDevelopEnvironment(folder);
    return FileOpen(folder + std::wstring(name), kOpenRead);
}

// ---- finding

bool DataDefinition::Find(std::string_view section, std::string_view key, std::string_view& value) const {
    const ConfigText::Found found = Content().Find(section, key);
    if (found.item == ConfigText::kNone) {
        SetErrorStatus(found.section != ConfigText::kNone ? kFileNoKey
                       : FileInitialised()                ? kFileNoSection
                                                          : kFileNoFile);
        return false;
    }
    SetErrorStatus(kFileOk);
    value = Content().Value(found.item);
    return true;
}

bool DataDefinition::FindItem(unsigned group, unsigned short code, std::string_view& list) const {
    return Find(Numbered(group).View(), ItemKey(UseAsCodeToIndex(group, code)).View(), list);
}

bool DataDefinition::Text(unsigned group, std::string_view key, bool translated, std::wstring& out) const {
    std::string_view value;
    const Numbered section(group);
    if (!Find(section.View(), key, value)) return false;
    FromUtf8(value, out);
    if (translated) Translate(section.View(), key, out);
    return true;
}

bool DataDefinition::TextQuery(unsigned group, std::string_view key, bool translated, std::wstring& out) const {
    const Guard guard(lock);
    return group <= kLastWithTexts && Text(group, key, translated, out);
}

bool DataDefinition::FlagQuery(unsigned group, std::string_view key, bool& out) const {
    const Guard guard(lock);
    out = false;
    std::string_view value;
    if (!Find(Numbered(group).View(), key, value)) return false;
    out = EqualNoCase(FromUtf8(value), L"true");
    return true;
}

bool DataDefinition::NumberQuery(unsigned group, std::string_view key, int& out) const {
    const Guard guard(lock);
    std::string_view value;
    if (!Find(Numbered(group).View(), key, value)) return false;
    const std::optional<int> number = ParseInt(value);
    if (number) out = *number;
    return number.has_value();
}

bool DataDefinition::ItemQuery(unsigned group, unsigned short code, int field, unsigned short& out) const {
    const Guard guard(lock);
    std::string_view list;
    return group < kFirstComposite && FindItem(group, code, list) && TakeUnsigned16(list, field, out);
}

// ---- groups

bool DataDefinition::GetGroupName(unsigned group, std::wstring& out) const {
    return TextQuery(group, "Name", true, out);
}

bool DataDefinition::GetGroupDescription(unsigned group, int index, std::wstring& out) const {
    if (index < 1) return TextQuery(group, "DescriptionText", true, out);
    return TextQuery(group, Numbered("DescriptionText", static_cast<unsigned>(index), "").View(), true, out);
}

bool DataDefinition::GetGroupDescriptionDoc(unsigned group, std::wstring& out) const {
    return TextQuery(group, "DescriptionDoc", false, out);
}

bool DataDefinition::GetGroupFileId(unsigned group, std::wstring& out) const {
    return TextQuery(group, kFileIdKey, false, out);
}

bool DataDefinition::GetGroupNumItems(unsigned group, int& outCount) const {
    const Guard guard(lock);
    const std::uint32_t section = Content().FindSection(Numbered(group).View());
    if (section == ConfigText::kNone) return false;
    int count = 0;
    for (auto item = Content().FirstItem(section); item != ConfigText::kNone; item = Content().NextItem(item)) {
        const std::string_view key = Content().Key(item);
        // Spare members count too: they take room in the composite's record.
        const bool counts = group < kFirstComposite ? key.starts_with("Item") : key.find("GroupId") != key.npos;
        count += counts ? 1 : 0;
    }
    outCount = count;
    return true;
}

bool DataDefinition::GetGroupDataBlockSize(unsigned group, int& out) const {
    const Guard guard(lock);
    out = 0;
    std::string_view value;
    if (!Find(Numbered(group).View(), "DataBlockSize", value)) return false;
    const std::wstring text = FromUtf8(value);
    if (EqualNoCase(text, L"Large")) out = 1;
    if (EqualNoCase(text, L"Compressed")) out = 2;
    if (EqualNoCase(text, L"None")) out = -1;
    return true;
}

bool DataDefinition::GetGroupFileCache(unsigned group, bool& out) const {
    return FlagQuery(group, "FileCache", out);
}

bool DataDefinition::GetIgnoreAttribChanges(unsigned group, bool& out) const {
    return FlagQuery(group, "IgnoreAttribChanges", out);
}

bool DataDefinition::GetGroupSupportSubSystem(unsigned group, int& out) const {
    return NumberQuery(group, "SupportSubSystem", out);
}

bool DataDefinition::GetGroupSubSystem(unsigned group, int& out) const {
    return NumberQuery(group, "SubSystem", out);
}

bool DataDefinition::GetRTAPortOffset(unsigned group, int& out) const {
    return NumberQuery(group, "RTAPortOffset", out);
}

bool DataDefinition::GetGroupBufferlength(unsigned group, int& out) const {
    if (group > kLastWithTexts) return false;
    int length = kDefaultBufferlength;
    NumberQuery(group, "Bufferlength", length);
    out = length;
    return true;
}

bool DataDefinition::GetAttachmentPoints(unsigned group, COrvString& out) const {
    std::wstring list;
    if (!TextQuery(group, "AttachmentPoints", true, list)) return false;
    out = COrvString(list, L',', true);
    return true;
}

// Hosts bring their own pictures; one is told for all devices.
bool DataDefinition::GetDeviceBmpID(unsigned group, unsigned& out) const {
    if (group >= kFirstComp) return false;
    out = kDeviceImage;
    return true;
}

// ---- items

bool DataDefinition::GetGroupItemDef(unsigned group, unsigned short code, std::wstring& name, std::wstring& mnemonic,
                                     unsigned short& type, unsigned short& length, unsigned short& format) const {
    const Guard guard(lock);
    std::string_view list;
    std::array<unsigned short, 3> numbers{};
    if (group >= kFirstComposite || !FindItem(group, code, list) || !TakeUnsigned16(list, kType, numbers[0]) ||
        !TakeUnsigned16(list, kLength, numbers[1]) || !TakeUnsigned16(list, kFormat, numbers[2])) {
        return false;
    }
    TakeText(list, kName, name);  // there, as the fields behind it are
    TakeText(list, kMnemonic, mnemonic);
    type = numbers[0];
    length = numbers[1];
    format = numbers[2];
    return true;
}

bool DataDefinition::GetGroupItemName(unsigned group, unsigned short code, std::wstring& out) const {
    const Guard guard(lock);
    std::string_view list;
    if (group > kLastWithTexts || !FindItem(group, code, list)) return false;
    if (!Translator::Instance().IsActive()) return TakeText(list, kName, out);
    // A translation gives the whole list anew, and the name is its first field.
    std::wstring translated = FromUtf8(list);
    Translate(Numbered(group).View(), ItemKey(UseAsCodeToIndex(group, code)).View(), translated);
    return COrvString(translated, L',', true).GetItem(kName, out);
}

bool DataDefinition::GetGroupItemMnem(unsigned group, unsigned short code, std::wstring& out) const {
    const Guard guard(lock);
    std::string_view list;
    return group <= kLastWithTexts && FindItem(group, code, list) && TakeText(list, kMnemonic, out);
}

bool DataDefinition::GetGroupItemType(unsigned group, unsigned short code, unsigned short& out) const {
    return ItemQuery(group, code, kType, out);
}

bool DataDefinition::GetGroupItemLength(unsigned group, unsigned short code, unsigned short& out) const {
    return ItemQuery(group, code, kLength, out);
}

bool DataDefinition::GetGroupItemFormat(unsigned group, unsigned short code, unsigned short& out) const {
    return ItemQuery(group, code, kFormat, out);
}

bool DataDefinition::GetGroupItemUseas(unsigned group, unsigned short code, unsigned short& out) const {
    return ItemQuery(group, code, kUseAs, out);
}

bool DataDefinition::GetGroupItemEditable(unsigned group, unsigned short code, int flags, bool& out) const {
    const Guard guard(lock);
    std::string_view list;
    if (group >= kFirstComposite || !FindItem(group, code, list)) return false;
    const std::optional<std::string_view> field = FieldOf(list, kEditable);
    const std::optional<int> editable = field ? ParseInt(*field) : std::nullopt;
    if (!editable) return false;
    out = (*editable & flags) == flags;
    return true;
}

bool DataDefinition::GetGroupItemSimValDbl(unsigned group, unsigned short code, double& out) const {
    const Guard guard(lock);
    std::string_view list;
    if (group >= kFirstComposite || !FindItem(group, code, list)) return false;
    out = SimulationValue(list);
    return true;
}

bool DataDefinition::GetGroupItemSimValInt(unsigned group, unsigned short code, int& out) const {
    double value = 0;
    if (!GetGroupItemSimValDbl(group, code, value)) return false;
    if (!TruncToInt(value, out)) out = 0;
    return true;
}

bool DataDefinition::GetGroupItemMapTxt(unsigned group, unsigned short code, int value, std::wstring& out) const {
    const Guard guard(lock);
    out.clear();
    if (group > kLastWithTexts) return false;
    const unsigned short index = UseAsCodeToIndex(group, code);
    std::wstring map;
    if (Text(group, MapKey(index).View(), true, map)) return COrvString(map, L',', true).GetItem(value, out);
    unsigned short type = 0;
    if (!GetGroupItemType(group, code, type) || (type != kTypeBool && type != kTypeBoolArray)) return false;
    if (value != 0 && value != 1) return false;
    out = YesOrNo(value == 1);
    return true;
}

bool DataDefinition::GetGroupItemDoubleToStr(unsigned group, unsigned short code, double value,
                                             std::wstring& out) const {
    const Guard guard(lock);
    if (group > kLastWithTexts) return false;
    out = L" ";
    std::string_view format;
    if (!Find(Numbered(group).View(), MapKey(UseAsCodeToIndex(group, code)).View(), format)) return false;
    out = FormatNumber(FromUtf8(format), value);
    return true;
}

unsigned short DataDefinition::UseAsCodeToIndex(unsigned group, unsigned short code) const {
    if (code < kFirstUseAs || code > kLastUseAs) return code;
    const Guard guard(lock);
    const auto& useAs = UseAsOf(group);
    const auto found = useAs.find(code);
    return found == useAs.end() ? static_cast<unsigned short>(kNoIndex) : found->second;
}

const std::unordered_map<unsigned short, unsigned short>& DataDefinition::UseAsOf(unsigned group) const {
    const auto known = indexOfUseAs.find(group);
    if (known != indexOfUseAs.end()) return known->second;
    auto& useAs = indexOfUseAs[group];
    const Numbered section(group);
    std::string_view list;
    // Indices that would read as use-as codes are left out.
    for (unsigned index = 0; index < kNoIndex; index = index + 1 == kFirstUseAs ? kLastUseAs + 1 : index + 1) {
        if (!Find(section.View(), ItemKey(index).View(), list)) break;
        unsigned short code = 0;
        if (!TakeUnsigned16(list, kUseAs, code) || code < kFirstUseAs) continue;
        useAs[code] = static_cast<unsigned short>(index);
    }
    return useAs;
}

// ---- composites

bool DataDefinition::GetItemGroup(std::string_view keyFormat, unsigned group, unsigned n, unsigned& outId) const {
    const Guard guard(lock);
    std::string_view list;
    if (group < kFirstComposite || !Find(Numbered(group).View(), Numbered(keyFormat, n, ")").View(), list)) {
        return false;
    }
    const std::optional<std::string_view> field = FieldOf(list, 0);
    const std::optional<unsigned> id = field ? ParseUnsigned(*field) : std::nullopt;
    if (id) outId = *id;
    return id.has_value();
}

bool DataDefinition::GetGroupItemGroup(unsigned group, unsigned n, unsigned& outId) const {
    return GetItemGroup("GroupId(", group, n, outId);
}

bool DataDefinition::GetSpareItemGroup(unsigned group, unsigned n, unsigned& outId) const {
    return GetItemGroup("SpareGroupId(", group, n, outId);
}

// ---- all groups

int DataDefinition::GetNumDevices() {
    const Guard guard(lock);
    if (groupOfIndex.empty()) {
        ForEachGroup(Content(), [&](int id, std::uint32_t) {
            if (id < static_cast<int>(kFirstComp)) groupOfIndex.emplace(groupOfIndex.size() + 1, id);
        });
    }
    return static_cast<int>(groupOfIndex.size());
}

int DataDefinition::GetNumComps() const {
    const Guard guard(lock);
    int count = 0;
    ForEachGroup(Content(), [&](int id, std::uint32_t) {
        if (id >= static_cast<int>(kFirstComp) && id < static_cast<int>(kFirstComposite)) ++count;
    });
    return count;
}

bool DataDefinition::GetGroupIdByIndex(int index, unsigned& outId) const {
    const Guard guard(lock);
    const auto found = groupOfIndex.find(index);
    if (found == groupOfIndex.end()) return false;
    outId = found->second;
    return true;
}

bool DataDefinition::GetGroupIdByFileId(std::wstring_view fileId, unsigned& outId) {
    const Guard guard(lock);
    if (groupOfFileId.empty()) {
        ForEachGroup(Content(), [&](int id, std::uint32_t section) {
            if (id >= static_cast<int>(kFirstComp)) return;
            const std::uint32_t item = Content().FindItem(section, kFileIdKey);
            const std::string_view text = item == ConfigText::kNone ? std::string_view() : Content().Value(item);
            groupOfFileId[FromUtf8(text)] = static_cast<unsigned>(id);
        });
    }
    const auto found = groupOfFileId.find(fileId);
    if (found == groupOfFileId.end()) return false;
    outId = found->second;
    return true;
}

bool DataDefinition::GetTypeInStringFormat(unsigned type, std::string& outText) {
    for (const TypeName& known : kTypeNames) {
        if (known.type != type) continue;
        outText = known.text;
        return true;
    }
    return false;
}

// ---- the product's own

DataDefinitionMolby& DataDefinitionMolby::GetDataDefinitionMolby() {
    static DataDefinitionMolby instance;
    return instance;
}

bool DataDefinitionMolby::InitialiseMolby() {
    return InitialiseFrom(std::wstring(DATA_DEF_BASE_NAME) + BrandingConfig::Instance().GetAppNameShort() + L".ini");
}

}  // namespace orv
