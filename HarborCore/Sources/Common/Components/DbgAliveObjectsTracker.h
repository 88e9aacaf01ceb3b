// A debugging aid: which component objects are still alive, and where each was created. The setting
// EnableAliveObjectsTracking of the section Debug turns it on, for the life of the loaded module.
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
    // Built at load, when it reads its settings.
    static DbgAliveObjectsTracker& Instance();

    // With tracking off both cost one read of a flag. The tag is a static text. Any thread.
    PLATFORM_FORCEINLINE void Track(const void* object, const char* tag) {
        if (enabled_.load()) [[unlikely]]
            AddRecord(object, tag);
    }
    void Untrack(const void* object) {
        if (enabled_.load()) [[unlikely]]
            RemoveRecord(object);
    }

    // Logs at WARN how many objects live and a line for each. Objects don't come or go during the listing.
    void Dump();

    DbgAliveObjectsTracker(const DbgAliveObjectsTracker&) = delete;
    DbgAliveObjectsTracker& operator=(const DbgAliveObjectsTracker&) = delete;

private:
    struct Record {
        std::array<void*, 4> frames{};  // return addresses of the creating call; null where the stack was shallower
        const char* tag = nullptr;
    };

    template <class T>
    friend class SingletonHolder;
    DbgAliveObjectsTracker();
    ~DbgAliveObjectsTracker();

    PLATFORM_NOINLINE void AddRecord(const void* object, const char* tag);
    void RemoveRecord(const void* object);

    std::atomic<bool> enabled_{false};
    std::uint32_t framesToSkip_ = 0;
    std::recursive_mutex lock_;  // guards records_
    std::map<const void*, Record> records_;
};

}  // namespace Harbor
