#include "Host/Console/StandardInput.h"

#include <algorithm>
#include <array>
#include <deque>

#include "Common/Base/Lock.h"
#include "Common/Base/Text.h"
#include "Common/Base/Thread.h"
#include "Harbor/Failure.h"

#include "Host/Console/Windows/System.h"

namespace Host {
namespace {

using Clock = std::chrono::steady_clock;

// Rounded up, so that the wait does not end early.
DWORD MillisecondsUntil(Clock::time_point until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    constexpr decltype(left) longest = INFINITE - 1;
    return static_cast<DWORD>(std::clamp<decltype(left)>(left, 0, longest));
}

// What is typed at a console is read as UTF-16: its code page does not have all characters.
std::string ReadTypedText(HANDLE console) {
    std::array<wchar_t, 1024> block;
    DWORD count = 0;
    if (!::ReadConsoleW(console, block.data(), static_cast<DWORD>(block.size()), &count, nullptr)) return {};
    constexpr wchar_t endOfInput = 0x1A;  // Ctrl-Z; in key mode, too
    if (count > 0 && block[0] == endOfInput) return {};
    return Harbor::ToUtf8({reinterpret_cast<const char16_t*>(block.data()), count});
}

}  // namespace

std::size_t ReadStandardInput(std::span<char> buffer) {
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min<std::size_t>(buffer.size(), MAXDWORD));
    const bool isRead = ::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), buffer.data(), size, &count, nullptr);
    return isRead ? count : 0;
}

// The system has no wait for the input of a pipe, so a thread reads. It shares the object; a read that never returns
// ends with the process.
class InputBlocks::Source {
public:
    Source() : available_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
        Harbor::ThrowLastErrorIf(available_ == nullptr, "Create an event for the input");
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() { ::CloseHandle(available_); }

    static void StartReading(const std::shared_ptr<Source>& source) {
        auto reader = std::make_unique<Reader>(source);
        Harbor::Thread thread;
        Harbor::ThrowIfFailed(thread.Start<&Reader::Run>(reader.get()), "Start the thread that reads the input");
        (void)reader.release();  // deletes itself
        thread.Detach();
    }

    Event Wait(const StopSignal& stop, Clock::time_point until, std::string& block) {
        for (;;) {
            if (TakeBlock(block)) return Event::Block;
            const std::array<HANDLE, 2> events{reinterpret_cast<HANDLE>(stop.WaitObject()), available_};
            switch (::WaitForMultipleObjects(events.size(), events.data(), FALSE, MillisecondsUntil(until))) {
                case WAIT_OBJECT_0:
                    return Event::Stop;
                case WAIT_TIMEOUT:
                    return Event::Time;
                default:
                    break;
            }
        }
    }

private:
    struct Reader {
        explicit Reader(std::shared_ptr<Source> shared) : source(std::move(shared)) {}
        void Run() noexcept {
            const std::unique_ptr<Reader> self(this);
            source->Read();
        }
        const std::shared_ptr<Source> source;
    };

    void Read() noexcept {
        const HANDLE file = ::GetStdHandle(STD_INPUT_HANDLE);
        DWORD mode = 0;
        const bool isConsole = ::GetConsoleMode(file, &mode);
        for (std::array<char, 4096> buffer;;) {
            const std::string block =
                isConsole ? ReadTypedText(file) : std::string(buffer.data(), ReadStandardInput(buffer));
            const Harbor::LockGuard guard(lock_);
            blocks_.push_back(block);
            ::SetEvent(available_);
            if (block.empty()) return;
        }
    }

    bool TakeBlock(std::string& block) {
        const Harbor::LockGuard guard(lock_);
        if (blocks_.empty()) return false;
        block = std::move(blocks_.front());
        blocks_.pop_front();
        return true;
    }

    const HANDLE available_;  // set when a block was read
    Harbor::Lock lock_;       // guards the blocks
    std::deque<std::string> blocks_;
};

InputBlocks::InputBlocks() : source_(std::make_shared<Source>()) {
    Source::StartReading(source_);
}
InputBlocks::~InputBlocks() = default;

InputBlocks::Event InputBlocks::Wait(const StopSignal& stop, Clock::time_point until, std::string& block) {
    return source_->Wait(stop, until, block);
}

}  // namespace Host
