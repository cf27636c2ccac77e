# The host's large libraries, which the services on Linux lean on: ICU for texts and locales, SQLite for the registry and
# what processes share, Fontconfig and FreeType for fonts.
find_package(ICU 72 REQUIRED COMPONENTS i18n uc)
find_package(SQLite3 REQUIRED)
find_package(Fontconfig REQUIRED)
find_package(Freetype REQUIRED)
set(OSTRA_HOST_LIBRARIES ICU::i18n ICU::uc SQLite::SQLite3 Fontconfig::Fontconfig Freetype::Freetype)
# The same for pkg-config.
set(OSTRA_HOST_MODULES "icu-i18n icu-uc sqlite3 fontconfig freetype2")
