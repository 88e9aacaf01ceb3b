#include "Common/Nodes/NodeDump.h"

#include "Common/Base/Format.h"
#include "Common/Base/HRes.h"
#include "Common/Nodes/CNodeSerializer.h"
#include "Common/Nodes/HiddenNodeAttrs.h"
#include "Platform/Text.h"

namespace Harbor {
namespace {

constexpr std::uint32_t DumpFlags = 257;
constexpr std::string_view OpeningMarker = "<nr>";
constexpr std::string_view ClosingMarker = "</nr>";
constexpr std::string_view LineBreaks = "\r\n";
constexpr std::string_view Blanks = " \r\n\t";

void TrimEndOf(std::string_view& text, std::string_view set) noexcept {
    text = text.substr(0, text.find_last_not_of(set) + 1);
}

// Returns the store's text without its outer element.
std::string_view WithoutMarkers(std::string_view text) noexcept {
    TrimEndOf(text, Blanks);
    std::size_t start = 0;
    if (text.starts_with(OpeningMarker)) {
        start = std::min(text.find_first_not_of(LineBreaks, OpeningMarker.size()), text.size());
    }
    if (text.ends_with(ClosingMarker)) {
        text.remove_suffix(ClosingMarker.size());
        TrimEndOf(text, LineBreaks);
    }
    return text.substr(std::min(start, text.size()));
}

WideString ToWide(std::string_view utf8) {
    if (utf8.empty()) return {};
    WideString wide(utf8.size(), u'\0');
    const int length = Platform::MultiByteToWideChar(Platform::CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()),
                                                     wide.data(), static_cast<int>(wide.size()));
    ThrowLastErrorIfFalse(length != 0);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

}  // namespace

ACNodeLogView::ACNodeLogView(const ACNode& source, DumpDepth dumpDepth)
    : depth(dumpDepth == DumpDepth::WholeTree ? AcnWholeTree : 0) {
    if (source) node = HiddenNodeAttrs::Instance().Mask(source, depth);
}

WideString DumpNode(const ACNodeLogView& view) {
    if (!view.node) return u"ACNode[<null>]";
    const AcnHandle handle = view.node.Handle();
    const std::string text = NodesToText(&handle, 1, DumpFlags, view.depth);
    return FormatWide(u"ACNode[0x%p]:\r\n%s", static_cast<const void*>(handle), ToWide(WithoutMarkers(text)));
}

WideStream& operator<<(WideStream& stream, const ACNode& node) {
    return stream << DumpNode(ACNodeLogView(node, DumpDepth::WholeTree));
}

}  // namespace Harbor
