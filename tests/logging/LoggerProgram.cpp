// A program of the family, as far as its log goes. LoggerTest.cpp installs copies of it and runs them.

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "Logger.h"

using Quenlor::Fraxo::SharedUtilities::Native::Logger;

namespace
{
struct StaticObject
{
    ~StaticObject() { Logger::Get()->Info("end"); }
} const theStaticObject;
} // namespace

/// @param arguments how many records, and the pause between them in milliseconds; ends as in a crash if they are given
int main(int count, char** arguments)
{
    auto* const logger = Logger::Get();
    Logger::Initialize();
    logger->Info("start");
    if (count == 1)
        return Logger::Get() == logger ? 0 : 1;
    for (int record = 0; record < std::stoi(arguments[1]); ++record)
    {
        logger->Info(std::to_string(record));
        std::this_thread::sleep_for(std::chrono::milliseconds{std::stoi(arguments[2])});
    }
    std::_Exit(0);
}
