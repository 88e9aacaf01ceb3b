// A file with a tree: it is read, or rejected with the position of the error, and the dump of a tree is read back as
// the same tree.
#include <optional>

#include "Common/Nodes/NodeDump.h"
#include "Fuzzing.h"
#include "Host/Base/Failure.h"
#include "Host/Compare/NodeFile.h"

namespace {

// The dump without its heading, which contains the handle.
std::string Dump(const Harbor::ACNode& node) {
    const std::string dump = Harbor::ToUtf8(Harbor::DumpNode({node, Harbor::DumpDepth::WholeTree}));
    return dump.substr(dump.find('\n'));
}

std::optional<std::string> Read(std::string_view bytes) {
    const Fuzzing::MemoryFile file(bytes);
    try {
        return Dump(Host::ReadNodeFile(file.Path()));
    } catch (const Host::BadInput& refusal) {
        REQUIRE(std::string_view(refusal.what()).starts_with(file.Path() + ":"));
        return std::nullopt;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto dump = Read(Fuzzing::AsBytes(data, size))) REQUIRE(Read(*dump) == dump);
    REQUIRE(Fuzzing::OpenNodeHandles() == 0);
    return 0;
}
