#include "Subsystems/ActionManager/TimedAction.h"

#include "Common/Base/HRes.h"
#include "Common/Logging/FunctionTrace.h"
#include "Schedules/TimeZoneBias.h"
#include "Subsystems/ActionManager/ActionImpl.h"
#include "Subsystems/ActionManager/Clock.h"
#include "Subsystems/ActionManager/CycleTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

constexpr WideChar ActionName[] = u"Schedule";

struct SettingsText {
    const TimedActionSettings& settings;
};

WideStream& operator<<(WideStream& stream, const SettingsText& text) {
    WriteSettings(stream, text.settings);
    return stream;
}

void RequireValid(const TimedActionSettings& settings) {
    const SettingsText text{settings};
    switch (CheckSettings(settings)) {
        case ScheduleFault::None:
            return;
        case ScheduleFault::IntervalPresence:
            LOG(Err, u"Invalid repeat time interval. The interval cannot be null,"
                         << u" and only one option should be set: seconds or milliseconds." << u" Regular Action: "
                         << text);
            break;
        case ScheduleFault::IntervalOfDay:
            LOG(Err,
                u"Repeat time interval is invalid. It must be multiple of 24 or must be divided by 24. "
                u"Regular Action: "
                    << text);
            break;
        case ScheduleFault::StartBeyondDay:
            LOG(Err, u"Start time should be less than seconds count in a day. Regular Action: " << text);
            break;
        case ScheduleFault::IntervalTooLong:
            // The interval is counted in 32 bits of milliseconds: beyond them it would be another one, or none at all.
            LOG(Err,
                u"Repeat time interval is too long. It must be less than 4294967296 milliseconds. "
                u"Regular Action: "
                    << text);
            break;
    }
    ThrowError(E_INVALIDARG);
}

std::int32_t LocalTimeBias() {
    std::int32_t bias = 0;
    const HRES code = HRES::Unchecked(GetLocalTimeZoneBias(bias));
    LOG(Dbg2, u"LocalTimeDiff: " << bias);
    if (code.Failed()) {
        LOG(Warn, u"Cannot determine local time zone bias." << code << u". UTC time will be used.");
    }
    return bias;
}

TimePoint ComputeFirstRun(const TimedActionSettings& settings, const TimePoint& now) {
    switch (settings.Type) {
        case TimedActionType::Repeat: {
            const FirstRun first = FirstRunOf(settings, now, 0);
            LOG(Dbg, u"Action First Run Time: " << FormatTimePoint(first.time));
            return first.time;
        }
        case TimedActionType::SpecificTime: {
            const FirstRun first = FirstRunOf(settings, now, settings.IsLocalTime ? LocalTimeBias() : 0);
            if (first.isNextDay) {
                LOG(Dbg2, u"Current time is greater then schedule start point. Start action with the next day.");
            }
            LOG(Dbg, u"Action first run time: " << FormatTimePoint(first.time));
            return first.time;
        }
    }
    LOG(Err, u"Unknown TimedActionType: " << static_cast<std::int32_t>(settings.Type));
    ThrowError(E_INVALIDARG);
}

}  // namespace

TimedAction::TimedAction(const TimedActionSettings& settings) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::TimedAction::TimedAction");
    RequireValid(settings);
    interval_ = IntervalOf(settings);
    action_ = Create<ActionImpl, IActionControl>();
    LOG(Dbg, u"Regular action:" << SettingsText{settings} << u" action created: '" << action_.Get() << u"'.");
    const TimePoint now = CurrentTime();
    LOG(Dbg, u"Action creation time: " << FormatTimePoint(now));
    actionFirstRunTime_ = ComputeFirstRun(settings, now);
    ThrowIfFailed(action_->SetNameAndType(ActionName, ScheduleActionType));
}

TimePoint TimedAction::DueFrom() const noexcept {
    return ActionManagement::DueFrom(actionFirstRunTime_, interval_, lastTriggeredTime_);
}

bool TimedAction::ShouldBeTriggered(const TimePoint& checkedTime) const noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::TimedAction::ShouldBeTriggered");
    const ScheduleCheck check = CheckSchedule(actionFirstRunTime_, interval_, lastTriggeredTime_, checkedTime);
    // One test for all lines: this runs for each action in each cycle.
    if (IsCycleTraced()) LogCheck(checkedTime, check);
    return check.due;
}

void TimedAction::LogCheck(const TimePoint& checkedTime, const ScheduleCheck& check) const noexcept {
    TRY_LOG(Dbg2, u"Action: '" << action_.Get() << u"'.");
    TRY_LOG(Dbg2, u"Checked time: " << FormatTimePoint(checkedTime));
    if (!check.firstRunReached) {
        TRY_LOG(Dbg2, u"Action: " << action_.Get() << u"'.");
        TRY_LOG(Dbg2, u"ActionFirstRunTime does not come");
        return;
    }
    TRY_LOG(Dbg2, u"Action: '" << action_.Get() << u"'.");
    TRY_LOG(Dbg2, u"IntervalStart: " << FormatTimePoint(check.intervalStart));
    if (!check.due) {
        TRY_LOG(Dbg2, u"Action: '" << action_.Get() << u"'.");
        TRY_LOG(Dbg2, u"Action already triggered during the current interval.");
    }
}

void TimedAction::SetTriggeredTime(const TimePoint& time) noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::TimedAction::SetTriggeredTime");
    TRY_LOG(Dbg, u"Action: '" << action_.Get() << u"'.");
    TRY_LOG(Dbg, u"Triggered time set: " << FormatTimePoint(time));
    lastTriggeredTime_ = time;
}

void TimedAction::MarkDue(const TimePoint& now, bool isLogged) noexcept {
    if (isLogged) {
        SetTriggeredTime(now);
        action_->SetTriggered(true);
    } else {
        lastTriggeredTime_ = now;
        static_cast<ActionImpl&>(*action_.Get()).Mark(true);
    }
}

void WriteSettings(WideStream& stream, const TimedActionSettings& settings) {
    stream << u"[";
    switch (settings.Type) {
        case TimedActionType::Repeat:
            stream << u"Repeat";
            break;
        case TimedActionType::SpecificTime:
            stream << u"SpecificTime";
            break;
        default:
            stream << static_cast<std::int32_t>(settings.Type);
    }
    stream << u"; Start = " << settings.StartSeconds << u"(sec); IsLocalTime = " << settings.IsLocalTime
           << u"; Interval = " << settings.IntervalSeconds << u"(sec) " << settings.IntervalMilliseconds << u" (ms)]";
}

}  // namespace DataCollection::ActionManagement
