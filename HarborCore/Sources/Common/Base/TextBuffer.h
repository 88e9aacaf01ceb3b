// A text that grows at its end. Short texts need no heap.
#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

class TextBuffer {
public:
    TextBuffer() noexcept {}  // leaves the characters uninitialised
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    // Appends `count` characters, which the caller must write to the place that is returned. It is valid until the next
    // call of a function that is not const. Throws std::bad_alloc.
    WideChar* Extend(std::size_t count) {
        if (count > capacity_ - size_) [[unlikely]]
            Grow(count);
        size_ += count;
        return data_ + size_ - count;
    }
    void Append(std::u16string_view text) { std::copy_n(text.data(), text.size(), Extend(text.size())); }
    void Append(WideChar c) { *Extend(1) = c; }

    // Removes everything after the first `size` characters.
    void Truncate(std::size_t size) noexcept { size_ = size; }

    std::u16string_view View() const noexcept { return {data_, size_}; }

private:
    static constexpr std::size_t InlineCapacity = 400;  // longer than a usual line of the log

    void Grow(std::size_t count) {
        const std::size_t capacity = std::max(size_ + count, 2 * capacity_);
        auto larger = std::make_unique_for_overwrite<WideChar[]>(capacity);
        std::copy_n(data_, size_, larger.get());
        heap_ = std::move(larger);
        data_ = heap_.get();
        capacity_ = capacity;
    }

    WideChar inline_[InlineCapacity];
    std::unique_ptr<WideChar[]> heap_;
    WideChar* data_ = inline_;
    std::size_t size_ = 0;
    std::size_t capacity_ = InlineCapacity;
};

}  // namespace Harbor
