#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// Names of the tools that the modules of a host have registered. Main thread, before the first query.
class ORV_EXPORT CToolList {
public:
    static CToolList& GetToolList();
    void RegisterTool(std::wstring_view name);  ///< a name that is there already stays where it is
    const std::vector<std::wstring>& GetToolNames() const { return names; }
    void Clear() { names.clear(); }

private:
    std::vector<std::wstring> names;
};

}  // namespace orv
