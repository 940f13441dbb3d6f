#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

class VesselConfig;

/// The names that users gave to data items of a vessel: its section "Aliases", `Alias(n)=name,` and a CDataInfo. Looked
/// up both ways; a data item is named by the text of its CDataId. A copy of the file's content: one thread at a time.
class ORV_EXPORT AliasMap {
public:
    /// Replaces what is held. Of two names for one item the later one counts; an item that doesn't read is passed over.
    void Load(const VesselConfig& vessel);
    std::wstring GetAlias(std::wstring_view dataId) const;  ///< empty if it has none
    std::wstring GetDataId(std::wstring_view alias) const;  ///< empty if nothing is called so
    const std::map<std::wstring, std::wstring, std::less<>>& Aliases() const { return aliases; }

private:
    std::map<std::wstring, std::wstring, std::less<>> aliases;  // by data id
    std::map<std::wstring, std::wstring, std::less<>> dataIds;  // by alias
};

}  // namespace orv
