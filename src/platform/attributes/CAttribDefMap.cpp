#include "platform/attributes/CAttribDefMap.h"

#include <functional>
#include <unordered_map>

namespace orv {

namespace {

struct Definition {
    std::wstring_view mnemonic;
    int type;
};

// clang-format off
constexpr Definition kDefinitions[] = {
    // where on the vessel something stands or looks from
    {L"AntennaOffset", kAttribCompOffset},      {L"SensorOffset", kAttribCompOffset},
    {L"TransducerOffset", kAttribCompOffset},   {L"TransmitterOffset", kAttribCompOffset},
    {L"ReceiverOffset", kAttribCompOffset},     {L"TowPointOffset", kAttribCompOffset},
    {L"SwivelOffset", kAttribCompOffset},       {L"PivotOffset", kAttribCompOffset},
    {L"DraughtOffset", kAttribCompOffset},      {L"ReferenceOffset", kAttribCompOffset},
    // which data a computation or a driver takes in
    {L"PositionItem", kAttribDataInfo},         {L"HeadingItem", kAttribDataInfo},
    {L"HeaveItem", kAttribDataInfo},            {L"RollItem", kAttribDataInfo},
    {L"PitchItem", kAttribDataInfo},            {L"DepthItem", kAttribDataInfo},
    {L"TideItem", kAttribDataInfo},             {L"DraughtItem", kAttribDataInfo},
    {L"SoundVelocityItem", kAttribDataInfo},    {L"AngleItem", kAttribDataInfo},
    {L"CableItem", kAttribDataInfo},            {L"LoadItem", kAttribDataInfo},
    {L"TriggerItem", kAttribDataInfo},          {L"InputItem", kAttribDataInfo},
    // positioning
    {L"XCor", kAttribDouble},                   {L"YCor", kAttribDouble},
    {L"ZCor", kAttribDouble},                   {L"ApplyDtf", kAttribBool},
    {L"DtfName", kAttribString},                {L"SelectDTF", kAttribInt},
    {L"ReduceHgtGeoid", kAttribBool},           {L"GeoidSep", kAttribInt},
    {L"SepManInput", kAttribDouble},            {L"GeoidSepRelTo", kAttribInt},
    {L"HgtSourceGps", kAttribInt},              {L"GeoidDtmFileName", kAttribString},
    {L"IntervalLogItem", kAttribString},
    // dredge tools
    {L"ShapeSelection", kAttribString},         {L"StandardShapeSize", kAttribString},
    {L"DriverVersion", kAttribInt},             {L"NumberOfSegments", kAttribInt},
    {L"DredgeToolType", kAttribInt},            {L"SectionConfigType", kAttribInt},
    {L"SegmentVector", kAttribVector},          {L"EffectiveWidth", kAttribDouble},
    {L"EffectiveHeight", kAttribDouble},        {L"PipeDiameter", kAttribDouble},
    {L"LadderLength", kAttribDouble},           {L"CutterRadius", kAttribDouble},
    {L"SectionShape", kAttribString},           {L"DredgeHeadShape", kAttribString},
    {L"WireframeName", kAttribString},          {L"3DStudioModel", kAttribString},
    {L"SketchUpModel", kAttribString},          {L"2DModelType", kAttribInt},
    {L"3DModelType", kAttribInt},
};
// clang-format on

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view text) const { return std::hash<std::wstring_view>()(text); }
};
using TypeMap = std::unordered_map<std::wstring, int, TextHash, std::equal_to<>>;

TypeMap& Types() {
    static TypeMap types = [] {
        TypeMap map;
        for (const Definition& definition : kDefinitions) map.emplace(definition.mnemonic, definition.type);
        return map;
    }();
    return types;
}

}  // namespace

int CAttribDefMap::GetAttribType(std::wstring_view mnemonic) {
    const TypeMap& types = Types();
    const auto found = types.find(mnemonic);
    return found == types.end() ? kAttribUnknown : found->second;
}

void CAttribDefMap::Define(std::wstring_view mnemonic, int type) {
    Types().insert_or_assign(std::wstring(mnemonic), type);
}

}  // namespace orv
