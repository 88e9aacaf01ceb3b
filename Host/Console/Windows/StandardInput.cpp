#include "Host/Console/StandardInput.h"

#include <algorithm>
#include <array>

#include "Common/Base/Lock.h"
#include "Common/Base/Text.h"
#include "Common/Base/Thread.h"
#include "Host/Base/Failure.h"
#include "Host/Console/LineEditor.h"

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
    constexpr wchar_t endOfInput = 0x1A;  // Ctrl-Z
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

// The system has no wait for the input of a pipe, so a thread reads. It shares the object, and a read that never
// returns ends with the process.
class TypedLines::Input {
public:
    // In key mode there is `onTyped`.
    explicit Input(std::function<void(const std::string&)> onTyped)
        : onTyped_(std::move(onTyped)), available_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
        RequirePlatformSuccess(available_ != nullptr, "Create an event for the input");
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input() { ::CloseHandle(available_); }

    static void StartReading(const std::shared_ptr<Input>& input) {
        auto reader = std::make_unique<Reader>(input);
        Harbor::Thread thread;
        RequireSuccess(thread.Start<&Reader::Run>(reader.get()), "Start the thread that reads the input");
        (void)reader.release();  // deletes itself
        thread.Detach();
    }

    Event Wait(const StopSignal& stop, Clock::time_point until, std::string& line) {
        while (!TakeLine(line)) {
            const std::array<HANDLE, 2> events{reinterpret_cast<HANDLE>(stop.WaitObject()), available_};
            switch (::WaitForMultipleObjects(events.size(), events.data(), FALSE, MillisecondsUntil(until))) {
                case WAIT_OBJECT_0:
                    return Event::Stop;
                case WAIT_TIMEOUT:
                    return Event::Time;
                default:
                    ShowTyped();
            }
        }
        return Event::Line;
    }

private:
    struct Reader {
        explicit Reader(std::shared_ptr<Input> shared) : input(std::move(shared)) {}
        void Run() noexcept {
            const std::unique_ptr<Reader> self(this);
            input->Read();
        }
        const std::shared_ptr<Input> input;
    };

    void ShowTyped() {
        if (!onTyped_) return;
        std::string text;
        {
            const Harbor::LockGuard guard(lock_);
            text = editor_.Text();
        }
        onTyped_(text);
    }

    void Read() noexcept {
        const HANDLE file = ::GetStdHandle(STD_INPUT_HANDLE);
        DWORD mode = 0;
        const bool isConsole = ::GetConsoleMode(file, &mode);
        for (std::array<char, 4096> block;;) {
            const std::string text =
                isConsole ? ReadTypedText(file) : std::string(block.data(), ReadStandardInput(block));
            const Harbor::LockGuard guard(lock_);
            if (onTyped_) {
                editor_.Feed(text);
            } else {
                pending_ += text;
            }
            ended_ = text.empty() || editor_.HasEnded();
            ::SetEvent(available_);
            if (ended_) return;
        }
    }

    bool TakeLine(std::string& line) {
        const Harbor::LockGuard guard(lock_);
        if (onTyped_) return editor_.TakeLine(line);
        const std::size_t end = pending_.find('\n');
        if (end == pending_.npos && !(ended_ && !pending_.empty())) return false;
        line = pending_.substr(0, end);
        if (line.ends_with('\r')) line.pop_back();
        pending_.erase(0, end == pending_.npos ? end : end + 1);
        return true;
    }

    const std::function<void(const std::string&)> onTyped_;
    const HANDLE available_;  // set when a block was read
    Harbor::Lock lock_;       // guards the members below
    LineEditor editor_;       // used in key mode
    std::string pending_;     // used without it
    bool ended_ = false;
};

TypedLines::TypedLines(std::function<void(const std::string&)> onTyped) {
    if (onTyped && KeyMode::IsPossible()) keyMode_.emplace();
    input_ = std::make_shared<Input>(keyMode_ ? std::move(onTyped) : nullptr);
    Input::StartReading(input_);
}
TypedLines::~TypedLines() = default;

TypedLines::Event TypedLines::Wait(const StopSignal& stop, Clock::time_point until, std::string& line) {
    if (keyMode_) keyMode_->Renew();
    return input_->Wait(stop, until, line);
}

}  // namespace Host
