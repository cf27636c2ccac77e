// tests/Programs/Sheet.cpp: a spreadsheet-like partner in conversations, written with the platform's
// own library for them, for ask_test.py.
//
// Sheet serve SERVICE          cells of the topic Sheet, until it is told [quit]
// Sheet ask SERVICE STEP...    asks a server's topic Lexicon: ?ITEM requests, other steps are
//                              commands; a line of output for each
#include "../Support/ConversationLibrary.h"

#include <algorithm>
#include <map>

using namespace conversation_library;

namespace
{
constexpr unsigned STUCK_TIME = 6000; // Milliseconds: longer than a client waits, farewell and all.

std::map<std::string, std::string> cells = {{"R1C1", "Birne \xC3\xA4"},
                                            {"R1C2", "12.50"},
                                            {"R2C1", ""},
                                            {"R1C1:R2C2", "Pear\t12.50\r\nPlum\t3\r\n"},
                                            {"LONG", std::string(30000, 'l')}};

// Names have no case.
HDDEDATA Answer(HSZ item)
{
    std::string name = TextOf(item);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    if (name == "STUCK")
        Sleep(STUCK_TIME);
    const auto cell = cells.find(name);
    return cell == cells.end() ? nullptr : DataOf(cell->second, item);
}

// [quit] and [set CELL VALUE]
UINT_PTR Do(const std::string& command)
{
    constexpr char SET[] = "[set ";
    if (command == "[quit]") {
        PostQuitMessage(0);
        return DDE_FACK;
    }
    const std::size_t cell = sizeof SET - 1;
    const std::size_t space = command.find(' ', cell);
    if (!command.starts_with(SET) || space == std::string::npos || !command.ends_with(']'))
        return DDE_FNOTPROCESSED;
    cells[command.substr(cell, space - cell)] =
        command.substr(space + 1, command.size() - space - 2);
    return DDE_FACK;
}

HDDEDATA CALLBACK OnTransaction(UINT type, UINT format, HCONV, HSZ topic, HSZ item, HDDEDATA data,
                                ULONG_PTR, ULONG_PTR)
{
    switch (type) {
    case XTYP_CONNECT:
        return AsResult(TextOf(topic) == "Sheet");
    case XTYP_REQUEST:
        return format == CF_TEXT ? Answer(item) : nullptr;
    case XTYP_EXECUTE:
        return AsResult(Do(ValueOf(data)));
    default:
        return nullptr;
    }
}

int Ask(const std::string& service, char** steps)
{
    if (DdeInitializeA(&library, AskByLibrary, APPCMD_CLIENTONLY, 0) != DMLERR_NO_ERROR)
        return 1;
    Tell(LibraryClient(service, "Sheet").IsThere() ? "found" : "nobody");
    LibraryClient client(service, "Lexicon");
    Tell(client.IsThere() ? "found" : "nobody");
    for (; *steps; ++steps)
        Tell(**steps == '?' ? client.Request(*steps + 1) : client.Execute(*steps, LONG_TIME));
    Tell(client.End());
    LibraryClient next(service, "Lexicon");
    Tell(next.IsThere() ? "found" : "nobody");
    Tell(PumpUntil([&] { return next.HasEnded(); }) ? "told of the end" : "not told");
    DdeUninitialize(library);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 2 ? argv[1] : "";
    return mode == "serve" ? Serve(argv[2], OnTransaction)
           : mode == "ask" ? Ask(argv[2], argv + 3)
                           : 2;
}
