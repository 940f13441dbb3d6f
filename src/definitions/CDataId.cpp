#include "definitions/CDataId.h"

#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

/// Takes the fields of a text off its front; once one doesn't read, nothing more does.
class FieldReader {
public:
    explicit FieldReader(std::wstring_view text) : rest(text) {}
    std::wstring_view Text() {
        if (atEnd) good = false;
        const std::size_t comma = rest.find(L',');
        const std::wstring_view field = rest.substr(0, comma);
        atEnd = comma == rest.npos;
        rest = atEnd ? std::wstring_view() : rest.substr(comma + 1);
        return field;
    }
    int Int() { return Number(ParseInt(Text())); }
    unsigned Unsigned() { return Number(ParseUnsigned(Text())); }
    CDataId Id() {
        const unsigned vessel = Unsigned(), group = Unsigned();
        const int number = Int();
        return {vessel, group, number, Int()};
    }
    CDataInfo Info() {
        const int kind = Int();
        return {kind, Id()};
    }
    /// A text with more fields is of another kind: written back it would lose them.
    bool ReadAll() const { return good && atEnd; }

private:
    template <class T>
    T Number(const std::optional<T>& parsed) {
        good = good && parsed;
        return parsed.value_or(T());
    }
    std::wstring_view rest;
    bool atEnd = false, good = true;
};

template <class T>
bool Take(const FieldReader& reader, T value, T& out) {
    if (!reader.ReadAll()) return false;
    out = std::move(value);
    return true;
}

}  // namespace

bool CDataId::SetFromString(std::wstring_view text) {
    FieldReader reader(text);
    return Take(reader, reader.Id(), *this);
}

std::wstring CDataId::GenerateString() const {
    return IntText(vessel) + L"," + IntText(group) + L"," + IntText(number) + L"," + IntText(item);
}

bool CDataInfo::SetFromString(std::wstring_view text) {
    FieldReader reader(text);
    return Take(reader, reader.Info(), *this);
}

std::wstring CDataInfo::GenerateString() const {
    return IntText(kind) + L"," + id.GenerateString();
}

bool CCompOffset::SetFromString(std::wstring_view text) {
    FieldReader reader(text);
    const int offsetKind = reader.Int();
    const unsigned vesselId = reader.Unsigned();
    const std::wstring_view offsetName = reader.Text();
    return Take(reader, CCompOffset(offsetKind, vesselId, offsetName, reader.Info()), *this);
}

std::wstring CCompOffset::GenerateString() const {
    return IntText(kind) + L"," + IntText(vessel) + L"," + name + L"," + info.GenerateString();
}

}  // namespace orv
