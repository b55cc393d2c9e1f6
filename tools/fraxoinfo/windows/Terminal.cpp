#include "Colour.h"

#include <Platform/Win32.h>

#include "CoreUtilities.h"

bool FraxoInfo::CanShowColours()
{
    if (!GetEnvironmentVariableValue("NO_COLOR").empty())
        return false;
    const HANDLE console = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0; // there is none when the output is no console
    return ::GetConsoleMode(console, &mode) != 0 &&
           ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}
