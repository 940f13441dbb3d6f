#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

inline constexpr int kUnitKinds = 28;

/// The units in which a project shows each of the 28 kinds of quantity. A kind that isn't set, and a number that is no
/// kind, convert nothing and have empty texts. Const operations: any thread; `SetUnit`: one thread, alone.
class ORV_EXPORT COrvUnitCnv {
public:
    /// `factor`: internal units per display unit; `offset`: internal value of a displayed 0. `mnemonic`: what stands
    /// behind a figure; `keyText`: what the unit is known by. A factor of 0 leaves the kind as it was.
    void SetUnit(int kind, double factor, double offset, std::wstring_view mnemonic, std::wstring_view unitName,
                 std::wstring_view keyText);
    std::wstring GetUnitKey(int kind) const;
    std::wstring GetUnitMnem(int kind) const;
    std::wstring GetUnitName(int kind) const;
    double GetFactor(int kind) const;  ///< 1 for a kind that isn't set
    /// Internal to displayed: (value - offset) / factor.
    double ConvertUnit(int kind, double value) const;
    /// Displayed to internal: value * factor + offset.
    double ConvertFromUnit(int kind, double value) const;

private:
    struct Unit {
        double factor = 1.0, offset = 0.0;
        std::wstring mnemonic, name, key;
    };
    const Unit& At(int kind) const;
    std::array<Unit, kUnitKinds> units;
};

}  // namespace orv
