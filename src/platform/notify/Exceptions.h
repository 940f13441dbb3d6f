#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "platform/Export.h"
#include "platform/os/FileSystem.h"

namespace orv {

/// A failure with a text for a person.
class ORV_EXPORT CException : public std::exception {
public:
    explicit CException(std::wstring_view description, std::uint32_t errorCode = 0);
    std::uint32_t GetErrorCode() const { return code; }  ///< of the system, as programs compare it; 0: none
    /// Into `buffer` of `size` characters, cut and terminated; false without room for anything.
    bool GetErrorMessage(wchar_t* buffer, std::size_t size) const;
    const char* what() const noexcept override { return narrow.c_str(); }

private:
    std::wstring text;
    std::string narrow;
    std::uint32_t code;
};

/// A failure of one file.
class ORV_EXPORT CFileException : public CException {
public:
    CFileException(std::wstring_view path, FsResult result);
};

}  // namespace orv
