#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geoid/GeoidModel.h"
#include "platform/Export.h"
#include "platform/os/FileSystem.h"

namespace orv {

/// Fields of a binary grid file, one after the other. Knows no path. A field that the file is too short for reads as 0
/// and leaves the reader at its end, so that a cut header shows as a step of 0.
class GridReader {
public:
    explicit GridReader(std::span<const std::byte> content, std::endian byteOrder = std::endian::little)
        : bytes(content), order(byteOrder) {}

    std::uint64_t Length() const { return bytes.size(); }
    std::uint64_t Remaining() const { return bytes.size() - position; }
    void Seek(std::uint64_t offset) { position = static_cast<std::size_t>(std::min<std::uint64_t>(offset, Length())); }
    void Skip(std::uint64_t count) { position += static_cast<std::size_t>(std::min(count, Remaining())); }

    template <class T>
    T Read() {
        std::array<std::byte, sizeof(T)> raw{};
        if (Remaining() < sizeof(T)) {
            position = bytes.size();
            return T{};
        }
        std::memcpy(raw.data(), bytes.data() + position, sizeof(T));
        position += sizeof(T);
        if (order != std::endian::native) std::reverse(raw.begin(), raw.end());
        return std::bit_cast<T>(raw);
    }

    /// Appends `count` numbers at once; no more than are there.
    template <class T>
    void ReadRun(std::uint64_t count, std::vector<T>& out) {
        static_assert(sizeof(T) == sizeof(std::uint32_t));
        const auto size = static_cast<std::size_t>(NodesLeft(static_cast<std::int64_t>(count), sizeof(T)));
        const std::size_t before = out.size();
        out.resize(before + size);
        if (size == 0) return;
        std::memcpy(out.data() + before, bytes.data() + position, size * sizeof(T));
        position += size * sizeof(T);
        if (order == std::endian::native) return;
        for (std::size_t i = before; i < out.size(); ++i) {
            out[i] = std::bit_cast<T>(__builtin_bswap32(std::bit_cast<std::uint32_t>(out[i])));
        }
    }

    /// How many of `wanted` nodes of `size` bytes the rest of the file holds: what memory may be asked for.
    std::uint64_t NodesLeft(std::int64_t wanted, std::size_t size) const {
        return wanted <= 0 ? 0 : std::min(static_cast<std::uint64_t>(wanted), Remaining() / size);
    }

private:
    std::span<const std::byte> bytes;
    std::endian order;
    std::size_t position = 0;
};

inline std::span<const std::byte> AsBytes(const std::string& content) {
    return std::as_bytes(std::span(content));
}

/// Nodes of a grid of so many rows and columns; 0 when either is 0 or less.
inline std::int64_t NodeCount(std::int64_t rows, std::int64_t columns) {
    return rows <= 0 || columns <= 0 ? 0 : rows * columns;
}

/// A model's file: where it lies and what became of reading it.
struct GridFileInfo {
    std::wstring fileName;      ///< with its folder
    int status = kGeoidNoData;  ///< code of the last read
    std::wstring error;         ///< text of a failure; empty for an unusable header
    bool opened = false;

    GeoidReason Reason() const {
        if (status == kGeoidOk) return GeoidReason::None;
        if (status == kGeoidBadHeader) return GeoidReason::BadHeader;
        return opened ? GeoidReason::NoData : GeoidReason::NoFile;
    }
    int NoDataInFile();
};

/// Folder of a path location, ends in a separator; empty when the installation has none.
ORV_EXPORT std::wstring GeoidFolder(int location);

/// Full path of the file `relative` ('\' or '/') below a path location. False when there is no such folder: `path` is
/// the bare name then, which mustn't be opened, or it would be looked for wherever the program happens to run.
bool GeoidPath(int location, std::wstring_view relative, std::wstring& path);

/// Binds `info` to a file below a path location and reads its bytes. On failure the status is kGeoidNoData and the
/// error says so.
bool ReadGridFile(int location, std::wstring_view relative, GridFileInfo& info, std::string& bytes);
/// The same for a file whose full path is known.
bool ReadGridFile(std::wstring path, GridFileInfo& info, std::string& bytes);

/// Reads as much of `out` as the file has from `offset` on; 0 on any failure.
std::size_t ReadAt(File& file, std::uint64_t offset, std::span<std::byte> out);

}  // namespace orv
