// examples/almanac/Locales.h: what the system's locales are and have.
#pragma once

#include <ostream>
#include <string>

namespace almanac
{
// Reads a locale as somebody types it: an id (0x0407, 1031), or codes of language and country
// (de-DE, de). False for one that the system doesn't have.
bool ReadLocale(const std::string& text, unsigned* locale);

// Lists languages, countries, code pages with their character sets, and pictures of dates. False
// where the system has no list of its locales.
bool ListLocales(std::ostream& output);

// A fact of a locale as UTF-8; empty if there is none.
std::string Fact(unsigned locale, unsigned type);
} // namespace almanac
