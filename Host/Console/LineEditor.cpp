#include "Host/Console/LineEditor.h"

#include <utility>

namespace Host {
namespace {

constexpr char EndOfInput = 0x04;
constexpr char Backspace = 0x08;
constexpr char RemoveLine = 0x15;
constexpr char RemoveLastWord = 0x17;
constexpr char Escape = 0x1B;
constexpr char Delete = 0x7F;

bool IsControl(char byte) {
    return static_cast<unsigned char>(byte) < ' ';
}
bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

void LineEditor::Feed(std::string_view bytes) {
    for (const char byte : bytes) {
        if (key_ == Key::Escape) {
            key_ = byte == '[' || byte == 'O' ? Key::Sequence : Key::Plain;
        } else if (key_ == Key::Sequence) {
            const bool isLast = byte >= '@' && byte <= '~';
            if (isLast) key_ = Key::Plain;
        } else if (byte == Escape) {
            key_ = Key::Escape;
        } else {
            TakePlain(byte);
        }
    }
}

bool LineEditor::TakeLine(std::string& line) {
    if (lines_.empty()) return false;
    line = std::move(lines_.front());
    lines_.pop_front();
    return true;
}

void LineEditor::TakePlain(char byte) {
    switch (byte) {
        case '\r':
        case '\n':
            lines_.push_back(std::exchange(text_, {}));
            break;
        case Backspace:
        case Delete:
            RemoveCharacter();
            break;
        case RemoveLine:
            text_.clear();
            break;
        case RemoveLastWord:
            RemoveWord();
            break;
        case EndOfInput:
            ended_ = ended_ || text_.empty();
            break;
        default:
            if (!IsControl(byte)) text_ += byte;
    }
}

void LineEditor::RemoveCharacter() {
    while (!text_.empty() && IsContinuation(text_.back())) text_.pop_back();
    if (!text_.empty()) text_.pop_back();
}

void LineEditor::RemoveWord() {
    text_.erase(text_.find_last_not_of(' ') + 1);
    text_.erase(text_.find_last_of(' ') + 1);
}

}  // namespace Host
