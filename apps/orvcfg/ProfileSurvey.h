#pragma once

#include <string>
#include <vector>

namespace orv {
class FileObject;
class SvpFile;
}  // namespace orv

namespace orv::cfg {

/// What can't be right in a sound velocity profile.
struct ProfileFinding {
    int point;  ///< from 1; 0 for the file as a whole
    std::string what, remedy;
    std::string Text() const { return (point > 0 ? "Point(" + std::to_string(point) + "): " : "") + what; }
};
/// `profile` has been read from `file`.
std::vector<ProfileFinding> CheckProfile(const FileObject& file, const SvpFile& profile);

}  // namespace orv::cfg
