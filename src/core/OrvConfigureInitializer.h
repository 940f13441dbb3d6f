#pragma once

#include <string>

#include "platform/Export.h"
#include "platform/service/CBaseInitializer.h"

namespace orv {

/// What this library registers: the forms of ports and the geoid models. A host makes it itself.
class ORV_EXPORT OrvConfigureInitializer : public CBaseInitializer {
public:
    std::wstring GetName() const override { return L"OrvConfigure"; }
    void RegisterComps() override;
    void RegisterGeoidModel() override;
};

}  // namespace orv
