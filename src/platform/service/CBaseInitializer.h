#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

/// What a module of the suite brings: a host makes one of each module at start, calls its registrations once, on the
/// main thread and before the first look-up, and keeps it to the end. A module overrides what it has something for.
class ORV_EXPORT CBaseInitializer {
public:
    virtual ~CBaseInitializer() = default;
    virtual std::wstring GetName() const { return {}; }
    virtual void InitializeTemplates(void* /*app*/) {}  ///< `app`: the host's application object
    virtual void RegisterActionGroups() {}
    virtual void RegisterComps() {}
    virtual void RegisterViews() {}
    virtual void RegisterTools() {}
    virtual void RegisterLayers() {}
    virtual void RegisterLoggers() {}
    virtual void RegisterDevices() {}
    virtual void RegisterGeoidModel() {}
};

}  // namespace orv
