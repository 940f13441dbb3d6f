#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// A text split into items at one separator character. Empty text holds no item, "a," holds two. A value: one thread at
/// a time.
class ORV_EXPORT COrvString {
public:
    explicit COrvString(wchar_t at);
    /// `strip`: take blanks off both ends of each item.
    COrvString(std::wstring_view text, wchar_t at, bool strip);

    void LoadString(std::wstring_view text, bool strip);
    int Size() const { return static_cast<int>(items.size()); }
    /// The item, readable and writable. Out of range it is an empty text that nobody keeps.
    std::wstring& operator[](int index);
    const std::wstring& operator[](int index) const;

    /// False if there is no such item or it doesn't convert; `out` is left as it was.
    bool GetItem(int index, int& out) const;
    bool GetItem(int index, unsigned& out) const;
    bool GetItem(int index, float& out) const;
    bool GetItem(int index, double& out) const;
    bool GetItem(int index, std::wstring& out) const;
    bool GetItem(int index, bool& out) const;
    bool SetItem(int index, std::wstring_view text);  ///< false if out of range

    void AddItem(std::wstring_view text);
    void AddItem(const wchar_t* text) { AddItem(std::wstring_view(text)); }
    COrvString& operator+=(double value);  ///< appends the number's shortest text as an item
    COrvString& operator+=(int value);

    void Clear() { items.clear(); }
    bool IsEmpty() const { return items.empty(); }
    void Erase(int first, int count);    ///< what lies beyond the end is passed over
    std::wstring Left(int count) const;  ///< the first items joined again
    /// True and the index of the first item that contains `text`.
    bool HasSubString(std::wstring_view text, int& index) const;
    std::wstring GetString() const;  ///< all items joined with the separator
    std::wstring String() const { return GetString(); }

private:
    bool Has(int index) const { return index >= 0 && index < Size(); }
    wchar_t separator;
    std::vector<std::wstring> items;
    std::wstring scratch;  // what operator[] hands out beyond the end
};

}  // namespace orv
