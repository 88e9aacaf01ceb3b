// A debugging aid that records which component objects are alive and where each was created. The setting
// EnableAliveObjectsTracking of the section Debug turns it on. The setting is read once, at load.
#pragma once

#include <array>
#include <atomic>
#include <map>

#include "Common/Base/Guards.h"
#include "Harbor/Types.h"
#include "Platform/Export.h"

namespace Harbor {

class DbgAliveObjectsTracker {
public:
    // Returns the tracker. The first call, at load, creates it; until then tracking is off.
    static DbgAliveObjectsTracker& Instance();

    // If tracking is off, each costs one read of a flag. `tag` must be a static text. Any thread may call them.
    PLATFORM_FORCEINLINE static void Track(const void* object, const char* tag) {
        if (Enabled.load()) [[unlikely]]
            Instance().AddRecord(object, tag);
    }
    static void Untrack(const void* object) {
        if (Enabled.load()) [[unlikely]]
            Instance().RemoveRecord(object);
    }

    // Logs at WARN the number of objects that are alive and one line for each. A thread that creates or destroys an
    // object waits until the listing has ended. Logs nothing if tracking is off or no object is alive.
    void Dump();

    DbgAliveObjectsTracker(const DbgAliveObjectsTracker&) = delete;
    DbgAliveObjectsTracker& operator=(const DbgAliveObjectsTracker&) = delete;

private:
    struct Record {
        // Return addresses of the call that created the object; null if the stack had fewer.
        std::array<void*, 4> frames{};
        const char* tag = nullptr;
    };

    template <class T>
    friend class SingletonHolder;
    DbgAliveObjectsTracker();
    ~DbgAliveObjectsTracker();

    PLATFORM_NOINLINE void AddRecord(const void* object, const char* tag);
    void RemoveRecord(const void* object);

    static inline constinit std::atomic<bool> Enabled{false};
    std::uint32_t framesToSkip_ = 0;
    CriticalSection lock_;  // guards records_
    std::map<const void*, Record> records_;
};

}  // namespace Harbor
