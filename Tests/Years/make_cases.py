"""Writes cases.txt: schedules over simulated years and the expected calls. Run it by hand after a change.

The module is checked against this reference, which shares nothing with it: another language, another implementation of
time zones, and the rules as the documentation states them. Times are whole milliseconds since 1970.
"""

import datetime
import zoneinfo

ZONES = ["Europe/Helsinki", "America/New_York", "Australia/Lord_Howe", "Europe/Dublin", "America/Santiago",
         "Asia/Kolkata", "UTC"]
SECOND, MINUTE, HOUR, DAY = 1000, 60_000, 3_600_000, 86_400_000
UTC = datetime.timezone.utc
EPOCH = datetime.datetime(1970, 1, 1, tzinfo=UTC)


def stamp(moment):
    return (EPOCH + datetime.timedelta(milliseconds=moment)).strftime("%Y-%m-%dT%H:%M:%S.%f")[:-3] + "Z"


def moment_of(*fields):
    return round((datetime.datetime(*fields, tzinfo=UTC) - EPOCH).total_seconds() * 1000)


def offset_at(zone, moment):
    local = (EPOCH + datetime.timedelta(milliseconds=moment)).astimezone(zoneinfo.ZoneInfo(zone))
    return round(local.utcoffset().total_seconds() * 1000)


def changes_of(zone, year):
    """Returns the moments at which the zone's offset changes, to the minute."""
    changes = []
    for day in range(365):
        low = moment_of(year, 1, 1) + day * DAY
        high = low + DAY
        if offset_at(zone, low) == offset_at(zone, high):
            continue
        before = offset_at(zone, low)
        while high - low > MINUTE:
            middle = (low + high) // 2 // MINUTE * MINUTE
            low, high = (middle, high) if offset_at(zone, middle) == before else (low, middle)
        changes.append(high)
    return changes


def first_run(schedule, zone, registered):
    kind, start, is_local, interval = schedule
    if kind == "every":
        return registered + interval
    of_day = start - offset_at(zone, registered) if is_local else start
    if of_day < 0:
        of_day += DAY
    run = registered // DAY * DAY + of_day
    return run + DAY if registered > run else run


def calls_of(schedule, zone, registered, polling, cycles, jumps):
    """One call at the first cycle in each interval. A call at the very beginning of an interval does not use it up."""
    run, interval = first_run(schedule, zone, registered), schedule[3]
    calls, last, clock = [], 0, registered
    for cycle in range(1, cycles + 1):
        clock += polling + jumps.get(cycle, 0)
        if clock >= run and last <= clock - (clock - run) % interval:
            last = clock
            calls.append(clock)
    return calls


def cases():
    for zone in ZONES:
        changes = changes_of(zone, 2026) or [moment_of(2026, 3, 29, 1), moment_of(2026, 10, 25, 1)]
        new_year = moment_of(2026, 1, 1, 0, 0, 0, 137_000)
        for is_local in (False, True):
            yield zone, new_year, ("at", 6 * HOUR + 30 * MINUTE, is_local, DAY), HOUR, 8760, {}
            yield zone, new_year, ("at", 23 * HOUR, is_local, 6 * HOUR), HOUR, 8760, {}
            yield zone, new_year, ("at", 0, is_local, 10 * DAY), 59 * MINUTE, 8900, {}
        yield zone, new_year, ("at", 12 * HOUR, True, 2 * DAY), HOUR, 8760, {3000: -3 * DAY, 5000: 5 * DAY}
        yield zone, new_year, ("every", 0, False, 7 * HOUR), 13 * MINUTE, 8000, {100: -HOUR, 4000: 8 * HOUR}
        yield zone, new_year, ("every", 0, False, 2**32 - 1), HOUR, 8760, {}
        yield zone, moment_of(2026, 7, 1), ("at", 3 * HOUR, True, 12 * HOUR), 30 * MINUTE, 8700, {50: 9 * DAY}
        yield zone, moment_of(2026, 5, 5, 23, 0), ("at", HOUR, True, DAY), 10 * MINUTE, 1000, {}
        for change in changes:
            of_day = (change + offset_at(zone, change - 1)) % DAY // SECOND * SECOND
            before = change - 36 * HOUR + 1
            yield zone, before, ("at", of_day, True, 30 * MINUTE), MINUTE, 4320, {}
            yield zone, before, ("at", of_day, True, DAY), MINUTE, 6000, {2000: HOUR, 3000: -HOUR}
            yield zone, change - HOUR + 250, ("at", of_day, True, 90 * SECOND), SECOND, 7200, {}
            yield zone, change - HOUR, ("at", change % DAY, False, 90 * SECOND), SECOND, 7200, {900: -600 * SECOND}
            yield zone, change - 4 * SECOND, ("every", 0, False, 7), 1, 8000, {1000: 500, 3000: -250, 5000: 90_000}
            yield zone, change - 4 * SECOND + 3, ("at", of_day, True, 1500), 7, 6000, {400: HOUR, 800: -HOUR}


def text_of(schedule):
    kind, start, is_local, interval = schedule
    seconds, milliseconds = (0, interval) if interval % SECOND else (interval // SECOND, 0)
    return f"{kind} {start // SECOND} {'local' if is_local else 'utc'} {seconds} {milliseconds}"


with open(__file__.replace("make_cases.py", "cases.txt"), "w", encoding="utf-8") as file:
    file.write("# zone, registration, kind, start (s), its time, interval (s, ms), polling (ms), cycles, jumps of the clock\n"
               "# before a cycle (ms, or -); number of calls, the first and the last. Written by make_cases.py.\n")
    for zone, registered, schedule, polling, cycles, jumps in cases():
        calls = calls_of(schedule, zone, registered, polling, cycles, jumps)
        jump_text = ",".join(f"{cycle}:{jump}" for cycle, jump in jumps.items()) or "-"
        edges = f"{stamp(calls[0])} {stamp(calls[-1])}" if calls else "- -"
        file.write(f"{zone} {stamp(registered)} {text_of(schedule)} {polling} {cycles} {jump_text} {len(calls)} {edges}\n")
