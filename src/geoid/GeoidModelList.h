#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "platform/Export.h"

namespace orv {

/// Makes models of one class.
class ORV_EXPORT GeoidModelICreator {
public:
    virtual GeoidModel* Create() = 0;  ///< by new, or null when memory fails; the caller owns it
    virtual ~GeoidModelICreator() = default;
};

template <class T>
class GeoidModelCreator : public GeoidModelICreator {
public:
    GeoidModel* Create() override { return new (std::nothrow) T; }
};

/// The registry of models. The type id and never the name is the key: three models share one name. Filled at start on
/// the main thread; `Create` from any thread after that.
class ORV_EXPORT GeoidModelList {
public:
    static GeoidModelList& GetGeoidModelList();

    /// Takes the creator over. A type id that is there already gets the new creator and keeps its place. A null
    /// creator is kept as it is: its models can't be made.
    void RegisterGeoidModel(std::wstring name, unsigned short typeId, GeoidModelICreator* creator);
    /// Null for an unknown type.
    std::unique_ptr<GeoidModel> Create(unsigned short typeId) const;

    struct Registration {
        std::wstring name;
        unsigned short typeId;
        std::unique_ptr<GeoidModelICreator> creator;
    };
    const std::vector<Registration>& Registrations() const { return registrations; }

private:
    std::vector<Registration> registrations;
};

/// Registers all models of this library in their order; called once by the host at start, harmless again.
ORV_EXPORT void RegisterGeoidModels();

/// Type id whose entry of GeoidmodelTypeKeys is `key`, or -1.
ORV_EXPORT int GeoidTypeForKey(std::wstring_view key);

}  // namespace orv
