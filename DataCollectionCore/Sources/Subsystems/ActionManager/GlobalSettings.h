// The settings of the manager, one instance for the loaded module.
#pragma once

#include <memory>

#include "Common/Nodes/ACNode.h"

namespace DataCollection::ActionManagement {

class GlobalSettings {
public:
    // Created at the first call. Any thread.
    static const std::shared_ptr<GlobalSettings>& Instance();

    // Reads the attribute "PollingIntervalInMilliseconds", which is required; any value is taken. A failure is thrown
    // as HRX with the store's code, and the settings stay as they were. Any thread.
    void Load(const Harbor::ACNode& node);

    // The pause of the worker between two cycles. Any thread.
    std::uint32_t PollingIntervalInMilliseconds() const noexcept;

private:
    std::uint32_t pollingIntervalInMilliseconds_ = 500;  // guarded by the settings lock
};

}  // namespace DataCollection::ActionManagement
