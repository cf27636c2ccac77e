#!/usr/bin/env python3
"""Makes tests/Data/gregorian-days.tsv: the days of the years 1 to 9999 as Python's datetime has them.

A line a century: the numbers of its first and last day, and the CRC-32 of a text that has a line for each day: date,
day of the week (0 = Sunday), day of the year (from 0), number of the day.
"""
import datetime
import pathlib
import zlib

top = pathlib.Path(__file__).resolve().parents[2]
with open(top / "tests/Data/gregorian-days.tsv", "w", encoding="ascii", newline="\n") as out:
    out.write("# Made by tools/tables/make_gregorian_days.py: first day, last day, CRC-32 of what it tells.\n")
    for century in range(0, 10000, 100):
        first = datetime.date(max(century, 1), 1, 1).toordinal()
        last = datetime.date(century + 99, 12, 31).toordinal()
        total = 0
        year, start = 0, 0
        for number in range(first, last + 1):
            day = datetime.date.fromordinal(number)
            if day.year != year:
                year, start = day.year, number
            text = f"{day.year}-{day.month}-{day.day} {day.isoweekday() % 7} {number - start} {day.toordinal()}\n"
            total = zlib.crc32(text.encode(), total)
        out.write(f"{first}\t{last}\t{total:08x}\n")
