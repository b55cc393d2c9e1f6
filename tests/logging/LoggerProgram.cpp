// A program of the family, as far as its log goes. LoggerTest.cpp puts copies of it where programs lie and runs them.

#include "Logger.h"

using Quenlor::Fraxo::SharedUtilities::Native::Logger;

namespace
{
struct StaticObject
{
    ~StaticObject() { Logger::Get()->Info("end"); }
} const theStaticObject;
} // namespace

int main()
{
    auto* const logger = Logger::Get();
    Logger::Initialize();
    logger->Info("start");
    return Logger::Get() == logger ? 0 : 1;
}
