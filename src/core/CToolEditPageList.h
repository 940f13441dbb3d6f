#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/NamedCreators.h"
#include "platform/Export.h"

namespace orv {

/// A page on which a tool is set up. A host derives its window from it.
class ORV_EXPORT ToolEditPage {
public:
    virtual ~ToolEditPage() = default;
};

class ORV_EXPORT ToolEditPageICreator {
public:
    virtual ToolEditPage* Create() = 0;  ///< by new; the caller owns it
    virtual ~ToolEditPageICreator() = default;
};

/// The edit pages of the tools that modules bring, by name. Filled at start on the main thread; keeps its creators.
class ORV_EXPORT CToolEditPageList {
public:
    static CToolEditPageList& GetToolEditPageList();

    /// Takes the creator over. The first registration of a name stays in force.
    void RegisterToolEditPage(std::wstring_view name, ToolEditPageICreator* creator) {
        creators.Register(name, creator);
    }
    std::unique_ptr<ToolEditPage> Create(std::wstring_view name) const;   ///< null for an unknown name
    void GetToolEditPageNames(std::vector<std::wstring>& outList) const;  ///< in the order of names

private:
    NamedCreators<ToolEditPageICreator> creators;
};

}  // namespace orv
