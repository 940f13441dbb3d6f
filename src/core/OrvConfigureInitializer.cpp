#include "core/OrvConfigureInitializer.h"

#include "definitions/CIoHandlerSettingsList.h"  // registers its port forms
#include "geoid/GeoidModelList.h"                // registers its models

namespace orv {

void OrvConfigureInitializer::RegisterComps() {
    RegisterPortEditors();
}

void OrvConfigureInitializer::RegisterGeoidModel() {
    RegisterGeoidModels();
}

}  // namespace orv
