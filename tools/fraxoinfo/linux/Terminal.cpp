#include "Colour.h"

#include <unistd.h>

#include "CoreUtilities.h"

bool FraxoInfo::CanShowColours()
{
    const std::string terminal = GetEnvironmentVariableValue("TERM");
    return GetEnvironmentVariableValue("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb" &&
           ::isatty(STDOUT_FILENO) == 1;
}
