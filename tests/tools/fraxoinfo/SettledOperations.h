#pragma once

#include "Catalogue.h"

/// Whether it answers the same as long as nobody changes the machine. What IsExeRunning answers goes by the programs of
/// the moment, and another test may just be running fraxoinfo.
inline bool IsSettled(const FraxoInfo::Operation& operation)
{
    return !operation.name.starts_with("IsExeRunning");
}
