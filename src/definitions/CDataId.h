#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Names one item of live data in a project: whose vessel, which group of data, the how manieth source of that group,
/// and which item of it. Text form "vessel,group,number,item". A value: one thread at a time.
class ORV_EXPORT CDataId {
public:
    CDataId() = default;
    CDataId(unsigned vesselId, unsigned groupId, int sourceNumber, int itemId)
        : vessel(vesselId), group(groupId), number(sourceNumber), item(itemId) {}

    unsigned VesselId() const { return vessel; }  ///< 0: bound to no vessel
    unsigned GroupId() const { return group; }
    int Number() const { return number; }
    int ItemId() const { return item; }
    void SetVesselId(unsigned id) { vessel = id; }
    void SetGroupId(unsigned id) { group = id; }
    void SetNumber(int value) { number = value; }
    void SetItemId(int id) { item = id; }

    /// All four fields and no more, each a number; else false and nothing changes.
    bool SetFromString(std::wstring_view text);
    std::wstring GenerateString() const;
    bool operator==(const CDataId&) const = default;

private:
    unsigned vessel = 0, group = 0;
    int number = 0, item = 0;
};

/// A reference to a data item with the kind of source that it comes from. Text form "kind," and the id.
class ORV_EXPORT CDataInfo {
public:
    CDataInfo() = default;
    CDataInfo(int sourceKind, const CDataId& dataId) : kind(sourceKind), id(dataId) {}

    int Kind() const { return kind; }
    const CDataId& DataId() const { return id; }
    CDataId& DataId() { return id; }
    bool SetFromString(std::wstring_view text);
    std::wstring GenerateString() const;
    bool operator==(const CDataInfo&) const = default;

private:
    int kind = 0;
    CDataId id;
};

/// A reference to an offset point of a vessel, and the data that moves it. Text form "kind,vessel,name," and a
/// CDataInfo; a name can't hold a comma.
class ORV_EXPORT CCompOffset {
public:
    CCompOffset() = default;
    CCompOffset(int offsetKind, unsigned vesselId, std::wstring_view offsetName, const CDataInfo& dataInfo)
        : kind(offsetKind), vessel(vesselId), name(offsetName), info(dataInfo) {}

    int Kind() const { return kind; }
    unsigned VesselId() const { return vessel; }
    const std::wstring& Name() const { return name; }
    const CDataInfo& DataInfo() const { return info; }
    const CDataId& DataId() const { return info.DataId(); }
    bool SetFromString(std::wstring_view text);
    std::wstring GenerateString() const;
    bool operator==(const CCompOffset&) const = default;

private:
    int kind = 0;
    unsigned vessel = 0;
    std::wstring name;
    CDataInfo info;
};

}  // namespace orv
