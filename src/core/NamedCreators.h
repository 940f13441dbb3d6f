#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace orv {

/// Creators by name, as the registries of the suite keep them: owned, walked in the order of names, and the first that
/// is registered under a name stays in force.
template <class Creator>
class NamedCreators {
public:
    using Map = std::map<std::wstring, std::unique_ptr<Creator>, std::less<>>;

    /// Takes the creator over.
    void Register(std::wstring_view name, Creator* creator) {
        std::unique_ptr<Creator> owned(creator);
        const auto known = creators.find(name);
        if (known == creators.end()) {
            creators.emplace(name, std::move(owned));
        } else if (known->second.get() == creator) {
            static_cast<void>(owned.release());  // it is ours already
        }
    }
    /// Null for an unknown name.
    Creator* Find(std::wstring_view name) const {
        const auto known = creators.find(name);
        return known == creators.end() ? nullptr : known->second.get();
    }
    typename Map::const_iterator First() const { return creators.begin(); }
    typename Map::const_iterator After(std::wstring_view name) const { return creators.upper_bound(name); }
    typename Map::const_iterator End() const { return creators.end(); }

private:
    Map creators;
};

}  // namespace orv
