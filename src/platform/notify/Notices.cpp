#include "platform/notify/Notices.h"

#include <array>
#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/text/Utf.h"

namespace orv {

namespace {

using Callbacks = std::array<NoticeCallback, kNoticeKinds>;

struct Board {
    std::mutex mutex;
    Callbacks callbacks;
};

/// Never destroyed: a worker may still have something to say while the process ends.
Board& TheBoard() {
    static Board& board = *new Board;
    return board;
}

std::size_t Index(Notice kind) {
    return static_cast<std::size_t>(kind);
}

void Print(Notice kind, std::wstring_view text) {
    static constexpr std::array<const char*, kNoticeKinds> names = {"message", "alert", "error", "info"};
    std::string line = std::string("orv ") + names[Index(kind)] + ": " + ToUtf8(text);
    for (char& c : line) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void SetNotice(Notice kind, NoticeCallback callback) {
    Board& board = TheBoard();
    const std::lock_guard lock(board.mutex);
    std::swap(board.callbacks[Index(kind)], callback);  // the old one dies after the lock: it may own anything
}

void Notify(Notice kind, std::wstring_view text) {
    NoticeCallback callback;
    {
        Board& board = TheBoard();
        const std::lock_guard lock(board.mutex);
        callback = board.callbacks[Index(kind)];
    }
    // Without the lock, so that a callback may itself notify or set another.
    if (callback) {
        callback(text);
    } else {
        Print(kind, text);
    }
}

struct NoticeRecorder::State {
    struct Log {
        std::mutex mutex;
        std::array<std::wstring, kNoticeKinds> texts;
    };
    std::shared_ptr<Log> log = std::make_shared<Log>();  // a callback that is under way keeps it
    Callbacks before;
};

NoticeRecorder::NoticeRecorder() : state(new State) {
    Callbacks recording;
    for (std::size_t i = 0; i < recording.size(); ++i) {
        recording[i] = [log = state->log, i](std::wstring_view text) {
            const std::lock_guard lock(log->mutex);
            log->texts[i].append(text).push_back(L'\n');
        };
    }
    Board& board = TheBoard();
    const std::lock_guard lock(board.mutex);
    state->before = std::exchange(board.callbacks, std::move(recording));
}

NoticeRecorder::~NoticeRecorder() {
    {
        Board& board = TheBoard();
        const std::lock_guard lock(board.mutex);
        std::swap(board.callbacks, state->before);
    }
    delete state;
}

std::wstring NoticeRecorder::Text(Notice kind) const {
    const std::lock_guard lock(state->log->mutex);
    return state->log->texts[Index(kind)];
}

}  // namespace orv
