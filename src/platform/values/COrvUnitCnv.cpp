#include "platform/values/COrvUnitCnv.h"

#include <cmath>

namespace orv {

namespace {
bool IsKind(int kind) {
    return kind >= 0 && kind < kUnitKinds;
}
}  // namespace

const COrvUnitCnv::Unit& COrvUnitCnv::At(int kind) const {
    static const Unit none;
    return IsKind(kind) ? units[static_cast<std::size_t>(kind)] : none;
}

void COrvUnitCnv::SetUnit(int kind, double factor, double offset, std::wstring_view mnemonic,
                          std::wstring_view unitName, std::wstring_view keyText) {
    if (!IsKind(kind) || factor == 0.0 || !std::isfinite(factor) || !std::isfinite(offset)) return;
    units[static_cast<std::size_t>(kind)] = {factor, offset, std::wstring(mnemonic), std::wstring(unitName),
                                             std::wstring(keyText)};
}

std::wstring COrvUnitCnv::GetUnitKey(int kind) const {
    return At(kind).key;
}

std::wstring COrvUnitCnv::GetUnitMnem(int kind) const {
    return At(kind).mnemonic;
}

std::wstring COrvUnitCnv::GetUnitName(int kind) const {
    return At(kind).name;
}

double COrvUnitCnv::GetFactor(int kind) const {
    return At(kind).factor;
}

double COrvUnitCnv::ConvertUnit(int kind, double value) const {
    const Unit& unit = At(kind);
    return (value - unit.offset) / unit.factor;
}

double COrvUnitCnv::ConvertFromUnit(int kind, double value) const {
    const Unit& unit = At(kind);
    return value * unit.factor + unit.offset;
}

}  // namespace orv
