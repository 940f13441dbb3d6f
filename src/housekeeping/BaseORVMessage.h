#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "housekeeping/AbstractORVMessage.h"
#include "housekeeping/CircularBuffer.h"
#include "platform/os/FileSystem.h"
#include "platform/os/TimedMutex.h"

namespace orv {

/// Error status of a message sink, set to 0 at the start of each operation.
enum MessageStatus : std::uint32_t {
    kMessageOk = 0,
    kMessageNoRing = 1,   ///< the ring could not be sized
    kMessageNoLog = 2,    ///< file logging could not be started
    kMessageTimeout = 4,  ///< another writer held the lock for too long
    kMessageNone = 6,     ///< no message to return
};

/// An application's message sink: the last 100 messages in memory for its views, a daily text log while logging is on,
/// and the news to the main window.
///
/// Writers: any thread. They queue on one lock, 3 s at most; the lock may be taken again by its holder. Readers: any
/// thread, without that lock; each keeps its own index. No failure of the disk reaches a writer: it ends the logging
/// and appears as a message.
class ORV_EXPORT BaseORVMessage : public AbstractORVMessage {
public:
    BaseORVMessage();  ///< throws a CException with the code 0x80004003 where there is no memory for a ring
    ~BaseORVMessage() override;
    BaseORVMessage(const BaseORVMessage&) = delete;
    BaseORVMessage& operator=(const BaseORVMessage&) = delete;

    bool AddMessage(CException* exception) override;
    bool AddMessage(MSG_LEVEL level, unsigned long id, const char* first, const char* second) override;
    bool AddMessage(MSG_LEVEL level, unsigned long id, const std::wstring& first, const std::wstring& second) override;
    bool AddMessage(MSG_LEVEL level, const std::wstring& text, bool post, const std::wstring& port, bool addTime,
                    MSG_FILTER filter) override;
    bool AddMessage(MSG_LEVEL level, const char* text, bool post, const std::wstring& port, bool addTime,
                    MSG_FILTER filter) override;

    /// Starts or ends the daily log. Empty texts keep what was set before; a folder that was never set is that of the
    /// project's event logs.
    bool SetLogging(bool on, const std::wstring& folder, const std::wstring& prefix);
    bool GetLogging() const { return logging; }
    void SetRawMsg(bool on) { raw = on; }         ///< no line end behind a text; a log that is made isn't locked
    void SetNoHeader(bool on) { noHeader = on; }  ///< bare texts: no session lines, no time

    unsigned GetErrorStatus() const { return errorStatus; }
    int GetBufferStatus() const { return buffer->Status(); }
    const std::wstring& GetKey() const { return key; }  ///< tells sinks apart
    std::wstring GetPort() const;                       ///< of the latest message, a hint

    bool GetMessage(Message<wchar_t>& out, long& index);              ///< `index`: a slot
    bool GetMessageAndIncrement(Message<wchar_t>& out, long& index);  ///< wraps behind the last message
    bool IncrementIndex(long& index);                                 ///< wraps at the end of the ring
    bool GetLastMessageIdx(long& index);                              ///< slot of the newest message
    bool GetLastMessage(Message<wchar_t>& out);
    bool GetPreviousMessage(Message<wchar_t>& out, long n);      ///< n = 0: the newest
    bool GetUnusedMessage(Message<wchar_t>& out);                ///< the oldest not handed out yet
    bool SearchMessage(Message<wchar_t>& message, long& index);  ///< by sequence; `index` as for GetPreviousMessage
    bool SearchMessageAbsolute(Message<wchar_t>& message, long& index);  ///< by sequence; `index`: a slot
    int GetNumTotalMessages() const { return buffer->Total(); }
    int GetNumUnusedMessages() const { return buffer->Unused(); }

protected:
    /// Log, ring and main window, under the writers' lock.
    virtual bool LogErrorMessage(MSG_LEVEL level, std::wstring text, bool post, MSG_FILTER filter);

private:
    void SetStatus(MessageStatus status) { errorStatus.store(status, std::memory_order_relaxed); }
    bool InitBuffer();
    bool InitFileLogging();
    bool StopFileLogging();
    bool OpenLog(const std::wstring& path);
    bool LogPath(std::wstring& path) const;
    void WriteLog(std::wstring_view text);
    FsResult Flush();
    FsResult CloseLog();
    void FailLogging(FsResult result);
    void UpdateTime();
    bool Found(bool found);

    std::atomic<unsigned> errorStatus{kMessageOk};
    std::atomic<bool> logging{false}, raw{false}, noHeader{false};
    std::wstring key;
    std::unique_ptr<SearchBuffer<Message<wchar_t>>> buffer;
    mutable CriticalSection portMutex;
    std::wstring port;  // guarded by portMutex

    TimedMutex writers;  // guards all below
    bool bufferReady = false;
    std::unique_ptr<File> log;
    std::wstring logPath;
    std::string pending;  // written text that isn't in the file yet
    std::wstring logFolder, logPrefix;
    std::int64_t logDate = 0;    // of the log's name: the digits YYYYMMDD, as the next
    std::int64_t lastFlush = 0;  // seconds UTC
    std::array<wchar_t, 255> scratch{};
    std::int32_t sequence = 0;
    // The second of the last message as text: a burst of messages formats it once.
    std::int64_t timeOfTexts = -1;
    bool timeIsNow = false;  // looked at for the message under way
    std::wstring timePrefix;
    std::int64_t today = 0;
};

}  // namespace orv
