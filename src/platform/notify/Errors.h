#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// A failure that is reported rather than returned.
class ORV_EXPORT Error {
public:
    virtual ~Error() = default;
    /// Sends what it is about and `text` to the error report channel.
    void Report(std::wstring_view text) const;

protected:
    virtual std::wstring Subject() const { return {}; }
};

/// A failure of one file.
class ORV_EXPORT FileError : public Error {
public:
    enum CODE { GENERAL = 0 };
    FileError(std::wstring_view name, CODE errorCode) : fileName(name), code(errorCode) {}
    CODE Code() const { return code; }

protected:
    std::wstring Subject() const override { return fileName; }

private:
    std::wstring fileName;
    CODE code;
};

}  // namespace orv
