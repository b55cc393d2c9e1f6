// Any file is read to its end, its faults name lines that it has, and what remains of it can be put to work.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "logging/LoggerPlan.h"

using namespace Quenlor::NativeLogging;

namespace
{
void Check(bool holds)
{
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int descriptor = ::memfd_create("log.xml", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    Check(::ftruncate(descriptor, 0) == 0 && ::pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
    Quenlor::QnFileName file;
    file.SetNameUtf8(path.c_str());

    std::vector<Fault> faults;
    const auto configuration = ReadConfiguration(file, faults);
    Check(configuration || !faults.empty());
    if (configuration)
        PlanLogger(*configuration, {.logger = "Editor.Analysis", .process = "1", .named = {}}, faults);
    const auto lineCount = static_cast<std::size_t>(std::count(data, data + size, std::uint8_t{'\n'})) + 1;
    for (const Fault& fault : faults)
    {
        Check(fault.line <= lineCount);
        Check(FormatFault(file, fault).find('\n') == std::string::npos);
    }
    return 0;
}
