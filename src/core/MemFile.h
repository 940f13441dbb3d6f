#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Export.h"
#include "platform/os/FileSystem.h"

namespace orv {

namespace textencoding {
/// How a text stands in bytes. The numbers are part of file formats.
enum type {
    utf8 = 0,         ///< UTF-8 without a byte order mark: what new files get
    utf16le = 1,      ///< UTF-16, little-endian, with its mark
    utf8bom = 2,      ///< UTF-8 with its mark: also the form that is enciphered
    windows1252 = 3,  ///< found in old files only
};
}  // namespace textencoding

/// An in-memory file: a copy of a byte buffer, or an empty one to write to.
class ORV_EXPORT memfile {
public:
    explicit memfile(textencoding::type as = textencoding::utf8) : encoding(as) {}
    memfile(const void* data, std::size_t length, textencoding::type as)
        : bytes(std::make_shared<std::string>(static_cast<const char*>(data), length)), encoding(as) {}
    const std::string& Bytes() const { return *bytes; }
    void SetBytes(std::string newBytes) { bytes = std::make_shared<std::string>(std::move(newBytes)); }
    /// The same bytes, held together with whoever reads them; they never change.
    std::shared_ptr<const std::string> SharedBytes() const { return bytes; }
    textencoding::type Encoding() const { return encoding; }

private:
    std::shared_ptr<const std::string> bytes = std::make_shared<std::string>();
    textencoding::type encoding;
};

/// The same through a stream object, in blocks.
class ORV_EXPORT archive {
public:
    archive(memfile& over, bool forReading, std::size_t block = 4096)
        : file(&over), reading(forReading), blockSize(block) {}
    memfile& File() const { return *file; }
    bool IsReading() const { return reading; }
    std::size_t BlockSize() const { return blockSize; }

private:
    memfile* file;
    bool reading;
    std::size_t blockSize;
};

/// Receives the encoded text of a file; the caller owns the block.
class ORV_EXPORT CharBuffer {
public:
    const char* Data() const { return bytes.data(); }
    std::size_t Size() const { return bytes.size(); }
    std::string& Bytes() { return bytes; }

private:
    std::string bytes;
};

/// An owned open file; its destructor closes it.
class ORV_EXPORT fhandle {
public:
    fhandle() = default;
    explicit fhandle(std::unique_ptr<File> opened) : file(std::move(opened)) {}
    bool isopen() const { return file != nullptr; }
    bool Read(void* data, std::size_t size, std::size_t& got);
    bool Write(const void* data, std::size_t size);
    bool Seek(std::uint64_t position);
    bool Length(std::uint64_t& length);
    bool Close();  ///< false if what was written didn't reach the file

private:
    std::unique_ptr<File> file;
};

}  // namespace orv
