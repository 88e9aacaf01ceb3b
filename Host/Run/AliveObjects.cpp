#include "Host/Run/AliveObjects.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Common/Base/Text.h"
#include "Common/Components/ComponentsModule.h"
#include "Harbor/Failure.h"
#include "Host/Base/UserFile.h"
#include "Host/Console/Environment.h"
#include "Host/Log/LogParser.h"
#include "Host/Settings/ModuleSettings.h"
#include "NodeFabric/Authoring.h"

namespace Host {
namespace {

constexpr char TrackingVariable[] = "GS_Debug_EnableAliveObjectsTracking";
// A tag: CComponentObject<class DataCollection::ActionImpl>::CComponentObject
constexpr std::u16string_view TagBegin = u"ObjTag='CComponentObject<class ";

std::uintmax_t SizeOf(const std::string& file) {
    std::error_code none;
    const auto size = std::filesystem::file_size(PathOf(file), none);
    return none ? 0 : size;
}

std::string ReadFrom(const std::string& file, std::uintmax_t offset) {
    std::ifstream stream(PathOf(file), std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset));
    return {std::istreambuf_iterator<char>(stream), {}};
}

class ClassCounts final : public LogSink {
public:
    void OnLine(std::u16string_view, const LogEntry& entry) override {
        const std::size_t at = entry.message.find(TagBegin);
        if (at == entry.message.npos) return;
        auto name = entry.message.substr(at + TagBegin.size());
        name = name.substr(0, name.find(u'>'));
        ++counts[Harbor::ToUtf8(name.substr(name.rfind(u':') + 1))];
    }
    void OnBanner(const std::vector<std::u16string>&) override {}
    void OnBadInput(std::uint64_t, std::string_view) override {}

    std::map<std::string, std::uint32_t> counts;
};

}  // namespace

std::uint32_t CountObjects(Harbor::IComponentsModule& module) {
    // The module returns its count only from the calls that change it.
    module.LockModule();
    return module.UnlockModule();
}

void AliveCounter::EnableTracking() {
    SetVariableIfMissing(TrackingVariable, "1");
}

AliveCounter::AliveCounter(const Harbor::Module& module)
    : module_(module.Get()), logFile_(LogFileOf(module.Handle())) {}

AliveObjects AliveCounter::Count() const {
    const auto before = SizeOf(logFile_);
    Harbor::ThrowIfFailed(module_.DumpAliveObjects(), "DumpAliveObjects");
    ClassCounts classes;
    LogParser parser(classes);
    parser.Feed(ReadFrom(logFile_, before));
    parser.Finish();
    AliveObjects alive{CountObjects(module_), std::move(classes.counts),
                       CountObjects(Harbor::ComponentsModule::Instance())};
    Harbor::ThrowIfFailed(AcnGetOpenHandleCount(&alive.nodeHandles), "Count node handles");
    return alive;
}

}  // namespace Host
