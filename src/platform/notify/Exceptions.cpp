#include "platform/notify/Exceptions.h"

#include <algorithm>

#include "platform/text/Utf.h"

namespace orv {

CException::CException(std::wstring_view description, std::uint32_t errorCode)
    : text(description), narrow(ToUtf8(description)), code(errorCode) {}

bool CException::GetErrorMessage(wchar_t* buffer, std::size_t size) const {
    if (!buffer || size == 0) return false;
    const std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.begin(), length, buffer);
    buffer[length] = L'\0';
    return true;
}

CFileException::CFileException(std::wstring_view path, FsResult result)
    : CException(std::wstring(path).append(L": ").append(FsResultText(result))) {}

}  // namespace orv
