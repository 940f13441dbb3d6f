#pragma once

#include <string>
#include <string_view>

#include "core/NamedCreators.h"
#include "platform/Export.h"

namespace orv {

/// A view's class at run time: what a host makes its views by. What a view is, is the host's affair.
class ORV_EXPORT ViewClass {
public:
    virtual ~ViewClass() = default;
    virtual void* CreateObject() = 0;
};

/// The views that modules bring, by name. Filled at start on the main thread; keeps the classes to the end.
class ORV_EXPORT CViewList {
public:
    static CViewList& GetViewList();

    /// Takes the class over. The first registration of a name stays in force.
    void RegisterView(std::wstring_view name, ViewClass* runtimeClass) { views.Register(name, runtimeClass); }
    ViewClass* GetView(std::wstring_view name) const { return views.Find(name); }  ///< null for an unknown name

    // A walk in the order of names; null at the end.

    ViewClass* GetFirst();
    ViewClass* GetNext();

private:
    ViewClass* StandOn(NamedCreators<ViewClass>::Map::const_iterator place);
    NamedCreators<ViewClass> views;
    std::wstring last;  // name that the walk stands on
};

}  // namespace orv
