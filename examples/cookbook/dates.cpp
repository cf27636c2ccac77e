// examples/cookbook/dates.cpp: a date in three calendars, printed for locales, and read again.
#include <Ostra/Ostra.h>

#include <cstdio>

// A day by the calendar of a row, as year-month-day. Here a tm has the whole year.
static void ShowIn(const char* name, int year, int month, int day, CT_Calendar::et_ID calendar)
{
    std::tm date{};
    date.tm_year = year;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    CT_Calendar::sv_Gregorian2Alternate(&date, calendar);
    std::printf("    %s: %d-%d-%d\n", name, date.tm_year, date.tm_mon + 1, date.tm_mday);
}

static void ShowRead(const char* text, const char* picture, unsigned locale)
{
    CT_Time time;
    const CT_CString written(text, 0xFFFFFFFF, 1252), how(picture);
    if (!time.b_Set(&written, &how, locale, CT_Calendar::id_None)) {
        std::printf("%s: not a date\n", text);
        return;
    }
    CT_CString plain;
    const CT_CString iso("yyyy-MM-dd");
    time.v_GetDate(&plain, &iso, 0x0409, CT_Time::df_Default);
    std::printf("%s: %s\n", text, plain.qccz_Get());
}

int main()
{
    std::puts("1 January 1998");
    ShowIn("Hebrew", 1998, 1, 1, CT_Calendar::id_Hebrew);
    ShowIn("Hijri", 1998, 1, 1, CT_Calendar::id_Hijri);
    ShowIn("Thai", 1998, 1, 1, CT_Calendar::id_Thai);

    // v_SetDate would store the day before; a text says exactly which day it is.
    CT_Time time;
    const CT_CString noon("1.1.1998 12:00"), numbers("d.M.yyyy HH:mm");
    time.b_Set(&noon, &numbers, 0x0407, CT_Calendar::id_None);
    CT_CString date, clock;
    const CT_CString full("dddd, d. MMMM yyyy"), hours("HH:mm");
    time.v_GetDate(&date, &full, 0x0407, CT_Time::df_Default);
    time.v_GetTime(&clock, &hours, 0x0407);
    std::printf("%s, %s\n", date.qccz_Get(), clock.qccz_Get());

    ShowRead("2. Juli 1998", "d. MMMM yyyy", 0x0407);
    ShowRead("5/3/2541", "d/M/yyyy", 0x041E); // a Thai year
    ShowRead("31.2.1998", "d.M.yyyy", 0x0407);
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
