// System/Time/Clock.cpp
#include <System/Time/Clock.h>

#include <windows.h>

static constexpr unsigned LAST_MOMENT = 0x7FFFFFFF;

unsigned CT_Clock::sn_Now()
{
    return static_cast<unsigned>(_time64(nullptr));
}

tm CT_Clock::sso_Now()
{
    const __time64_t i8_Now = _time64(nullptr);
    const tm* pcso_Local = _localtime64(&i8_Now);
    return pcso_Local ? *pcso_Local : tm{};
}

const tm* CT_Clock::spcso_Local(unsigned n_Moment)
{
    const __time64_t i8_Moment = n_Moment;
    return n_Moment <= LAST_MOMENT ? _localtime64(&i8_Moment) : nullptr;
}

unsigned CT_Clock::sn_Make(tm* pso_Time)
{
    tm so_Made = *pso_Time;
    const __time64_t i8_Moment = _mktime64(&so_Made);
    if (i8_Moment < 0 || i8_Moment > LAST_MOMENT)
        return NONE;
    *pso_Time = so_Made;
    return static_cast<unsigned>(i8_Moment);
}

int CT_Clock::si_Zone()
{
    _tzset();
    return static_cast<int>(_timezone);
}

int CT_Clock::sb_HasDaylight()
{
    _tzset();
    return _daylight;
}
