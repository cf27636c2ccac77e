// Compiled into each program that links Ostra::utf8: UTF-8 is its ANSI code page.
extern "C" __attribute__((visibility("default"))) unsigned winapi_ProgramAnsiPage();

extern "C" unsigned winapi_ProgramAnsiPage()
{
    return 65001;
}
