#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// What the library has to say to a person, beside its results. A host sets where each kind goes; by default all go to
/// the standard error output. A callback runs on the thread that has something to say and must not block for long.
/// Setting and calling from several threads is safe.
namespace orv {

enum class Notice {
    Message,      ///< the suite shows it in a modal box
    Alert,        ///< the alert channel: shown without stopping the caller
    ErrorReport,  ///< a file that failed its verification
    Information,  ///< told for the log: a file put aside, a save done in place
};
inline constexpr int kNoticeKinds = 4;

using NoticeCallback = std::function<void(std::wstring_view text)>;
ORV_EXPORT void SetNotice(Notice kind, NoticeCallback callback);  ///< an empty callback puts the default back
ORV_EXPORT void Notify(Notice kind, std::wstring_view text);

/// Collects what is said while it lives, and puts back what was set before. For tests and for tools that show it later.
class ORV_EXPORT NoticeRecorder {
public:
    NoticeRecorder();
    ~NoticeRecorder();
    NoticeRecorder(const NoticeRecorder&) = delete;
    NoticeRecorder& operator=(const NoticeRecorder&) = delete;
    /// All texts of one kind so far, each ended by '\n'.
    std::wstring Text(Notice kind) const;

private:
    struct State;
    State* state;
};

}  // namespace orv
