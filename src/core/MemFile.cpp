#include "core/MemFile.h"

namespace orv {

bool fhandle::Read(void* data, std::size_t size, std::size_t& got) {
    return file && file->Read(data, size, got) == FsResult::Ok;
}

bool fhandle::Write(const void* data, std::size_t size) {
    return file && file->Write(data, size) == FsResult::Ok;
}

bool fhandle::Seek(std::uint64_t position) {
    return file && file->Seek(position) == FsResult::Ok;
}

bool fhandle::Length(std::uint64_t& length) {
    return file && file->Length(length) == FsResult::Ok;
}

bool fhandle::Close() {
    if (!file) return false;
    const bool closed = file->Close() == FsResult::Ok;
    file.reset();
    return closed;
}

}  // namespace orv
