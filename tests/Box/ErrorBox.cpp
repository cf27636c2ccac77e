// tests/Box/ErrorBox.cpp: shows the window of an error in several scripts, with a trail.
//
//     error_box FLAGS
//
// Prints the number of the button. box_test.py presses it.
#include <Ostra/Ostra.h>

#include <cstdio>
#include <cstdlib>

static void Fail(CT_ErrorManager& errors)
{
    errors.v_SetMessageError(reinterpret_cast<const unsigned short*>(
        u"The file isn't there: C:\\new\\<b>&amp;.txt\n"
        u"\u0424\u0430\u0439\u043B \u043D\u0435 \u043D\u0430\u0439\u0434\u0435\u043D\n"
        u"\u05D4\u05E7\u05D5\u05D1\u05E5 \u05DC\u05D0 \u05E0\u05DE\u05E6\u05D0\n"
        u"\u30D5\u30A1\u30A4\u30EB\u304C\u898B\u3064\u304B\u308A\u307E\u305B\u3093"));
    errors.v_AddLocation("Ostra/File/WinFile", 312);
    errors.v_AddLocation("Database/RecordManager/RecordManager", 96);
    errors.v_AddLocation("examples/dictionary/main.cpp", 41);
}

int main(int argc, char** argv)
{
    const unsigned flags = argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 0)) : 0;
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    Fail(errors);
    const auto* title = reinterpret_cast<const unsigned short*>(
        u"Dictionary: \u043E\u0448\u0438\u0431\u043A\u0430");
    std::printf("%d\n", errors.i_ErrorLocationWindow(0, title, flags));
    errors.v_ClearError();
    return 0;
}
