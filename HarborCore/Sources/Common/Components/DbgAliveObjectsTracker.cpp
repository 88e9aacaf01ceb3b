#include "Common/Components/DbgAliveObjectsTracker.h"

#include <algorithm>

#include "Common/Base/Format.h"
#include "Common/Base/SingletonHolder.h"
#include "Common/Logging/Log.h"
#include "Common/Settings/SettingsStore.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

constexpr WideChar Section[] = u"Debug";
constexpr WideChar EnableKey[] = u"EnableAliveObjectsTracking";
constexpr WideChar FramesToSkipKey[] = u"AliveObjectsTrackingFramesToSkip";

constinit SingletonHolder<DbgAliveObjectsTracker> Holder;

template <class Frames>
WideString FormatFrames(const Frames& frames) {
    WideString text;
    for (const void* frame : frames) text += FormatWide(u"%#p;", frame);
    if (!text.empty()) text.pop_back();
    return text;
}

}  // namespace

DbgAliveObjectsTracker& DbgAliveObjectsTracker::Instance() {
    return Holder.Get();
}

DbgAliveObjectsTracker::DbgAliveObjectsTracker() {
    if (GetSettingNumberOr(Section, EnableKey, 0) == 0) return;
    // AddRecord adds 1 for its own frame, which must not overflow.
    framesToSkip_ = std::min(GetSettingNumberOr(Section, FramesToSkipKey, 0), 0xFFFFFFFEu);
    Enabled.store(true);
}

DbgAliveObjectsTracker::~DbgAliveObjectsTracker() {
    Enabled.store(false);
}

void DbgAliveObjectsTracker::AddRecord(const void* object, const char* tag) {
    Record record;
    record.tag = tag;
    Platform::RtlCaptureStackBackTrace(framesToSkip_ + 1, static_cast<Platform::DWORD>(record.frames.size()),
                                       record.frames.data(), nullptr);
    const CriticalSectionGuard guard(lock_);
    records_.insert_or_assign(object, record);
}

void DbgAliveObjectsTracker::RemoveRecord(const void* object) {
    const CriticalSectionGuard guard(lock_);
    records_.erase(object);
}

void DbgAliveObjectsTracker::Dump() {
    if (!Enabled.load()) return;
    const CriticalSectionGuard guard(lock_);
    if (records_.empty()) return;
    // This is called through an interface that returns a code, so nothing may be thrown. A line that cannot be logged
    // is left out.
    TRY_LOG(Warn, u"Alive component objects: " << records_.size());
    for (const auto& entry : records_) {
        const Record& record = entry.second;
        TRY_LOG(Warn,
                u"ObjTag='" << record.tag << u"' Ptr=" << entry.first << u" EIPs=" << FormatFrames(record.frames));
    }
}

}  // namespace Harbor
