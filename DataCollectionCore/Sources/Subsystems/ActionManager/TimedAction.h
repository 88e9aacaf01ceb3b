// The schedule of one regular action.
#pragma once

#include "Common/Base/WideStream.h"
#include "DataCollection/Action.h"
#include "Harbor/ComponentPtr.h"
#include "Schedules/Schedule.h"

namespace DataCollection::ActionManagement {

// Built on the client's thread; from then on the worker alone uses it, under the manager's registry lock.
class TimedAction {
public:
    // Examines the record, creates the action and works out the first run. HRX with E_INVALIDARG for a bad record.
    explicit TimedAction(const TimedActionSettings& settings);
    TimedAction(TimedAction&&) noexcept = default;
    TimedAction& operator=(TimedAction&&) noexcept = default;

    // Counts no reference.
    IActionControl* GetAction() const noexcept { return action_.Get(); }
    TimePoint FirstRunTime() const noexcept { return actionFirstRunTime_; }

    // From this moment on ShouldBeTriggered is true, until SetTriggeredTime is called; before it, it is false. It holds
    // also for a clock that goes back.
    TimePoint DueFrom() const noexcept;

    // Whether the schedule is due at that moment. Changes nothing.
    bool ShouldBeTriggered(const TimePoint& checkedTime) const noexcept;
    void SetTriggeredTime(const TimePoint& time) noexcept;
    // Marks the action and sets its triggered time. With `isLogged` the lines of both are written if they are enabled.
    void MarkDue(const TimePoint& now, bool isLogged) noexcept;

private:
    void LogCheck(const TimePoint& checkedTime, const ScheduleCheck& check) const noexcept;

    Harbor::ComponentPtr<IActionControl> action_;
    TimePoint lastTriggeredTime_;
    TimePoint actionFirstRunTime_;
    std::chrono::milliseconds interval_;
};

// "[Repeat; Start = 0(sec); IsLocalTime = 0; Interval = 3600(sec) 0 (ms)]"
void WriteSettings(Harbor::WideStream& stream, const TimedActionSettings& settings);

}  // namespace DataCollection::ActionManagement
